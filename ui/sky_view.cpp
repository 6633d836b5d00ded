#include "ui/sky_view.h"

#include "ui/caption_label.h"
#include "ui/sky_plot.h"

namespace ui {

namespace {

QLayout* legend(const QString& name, QWidget* mark, const QString& tip) {
    QHBoxLayout* line = row();
    line->addWidget(mark);
    line->addWidget(fixedText(name, tip), 1);
    return line;
}

} // namespace

SkyView::SkyView(form::Form1& form)
    : Card("Sky", "North is up, the zenith in the middle; the rings stand at 30 and 60 degrees of elevation. "
                  "The lines show the last ten minutes, the dashed one the way that is planned, the marks at "
                  "the rim the "
                  "ends of the range. A click turns the antenna there.") {
    auto* plot = new SkyPlot(form);
    plot->setObjectName("skyPlot");
    plot->setAccessibleName("Sky plot");
    plot->setAccessibleDescription(toolTip());
    plot->setToolTip(toolTip());
    auto* side = new QVBoxLayout;
    side->addWidget(groupTitle(accessibleName(), toolTip()));
    side->addSpacing(kGrid);
    side->addLayout(legend("Antenna", new SkyMark(SkyPlot::Who::Antenna), "Where the antenna points."));
    side->addLayout(
        legend("Target", new SkyMark(SkyPlot::Who::Target), "The target that the program sends."));
    side->addStretch(1);
    QHBoxLayout* all = row();
    all->addLayout(side);
    all->addWidget(plot, 1);
    body().addLayout(all, 1);
}

} // namespace ui
