#include "ui/rotor_view.h"

#include <QGridLayout>

namespace ui {

namespace {

constexpr double kReceivedSize = 1.9;
constexpr const char* kScrollKeys = "Left and Right";

struct Threshold {
    form::ScrollBar& bar;
    form::Label& value;
    const char* name;
    const char* tip;
};

QLayout* slider(Adapters& adapters, form::ScrollBar& bar, form::Label& value, CaptionLabel* name,
                const Words& words, const char* samples) {
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(kGrid);
    grid->setVerticalSpacing(0);
    Words valueWords{words.name + ", value", words.tip, {}};
    CaptionLabel* number = adapters.label(value, valueWords, samples);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(name, 0, 0);
    grid->addWidget(number, 0, 1);
    grid->addWidget(adapters.scrollBar(bar, words), 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    return grid;
}

} // namespace

RotorView::RotorView(form::Form1& form, Adapters& adapters)
    : Card("Satellite", "Where the satellite stands, and how the rotor is to follow it.") {
    adapters.frame(form.framSat, *this);
    body().addWidget(groupTitle(accessibleName(), toolTip()));

    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(3 * kGrid);
    grid->setVerticalSpacing(kGrid);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);

    const auto received = [&](form::Label& control, const QString& axis) {
        const QString tip = axis + " received from the tracking program, offset added.";
        QHBoxLayout* line = row();
        line->addWidget(fixedText(axis, tip));
        CaptionLabel* label = adapters.label(control, {"Received " + axis.toLower(), tip}, "-000.00");
        label->setFont(scaledFont(label->font(), kReceivedSize, QFont::DemiBold));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        line->addWidget(label, 1);
        return line;
    };
    grid->addLayout(received(form.lblAzRx, "Azimuth"), 0, 0);
    grid->addLayout(received(form.lblElRx, "Elevation"), 0, 1);

    const auto offset = [&](form::ScrollBar& bar, form::Label& value, form::Label& name,
                            const QString& axis) {
        const QString tip = "Degrees that are added to the received " + axis + ".";
        CaptionLabel* caption =
            adapters.label(name, {"Name of the " + axis + " offset", tip}, shown(name.Caption));
        caption->setTone(CaptionLabel::Tone::Quiet);
        return slider(adapters, bar, value, caption, {axis + " offset", tip, kScrollKeys}, "-000.00");
    };
    grid->addLayout(offset(form.HScOffsetA, form.lblOffsetA, form.lblOffsetName, "azimuth"), 1, 0);
    grid->addLayout(offset(form.HScOffsetB, form.lblOffsetB, form.lblOffsetnameb, "elevation"), 1, 1);

    const Threshold thresholds[] = {
        {form.HScroll2, form.lblHiSpOnAz, "High speed on, azimuth",
         "Distance in azimuth from which the rotor turns at its fast speed."},
        {form.HScroll4, form.lblHiSpOnEL, "High speed on, elevation",
         "Distance in elevation from which the rotor turns at its fast speed."},
        {form.HScroll6, form.lblAutoRStAz, "Restart, azimuth",
         "Distance in azimuth at which a resting rotor starts again."},
        {form.HScroll5, form.lblAutoRStEl, "Restart, elevation",
         "Distance in elevation at which a resting rotor starts again."},
        {form.HScroll1, form.lblAccCurve, "Acceleration curve", "How steeply the speed rises and falls."},
        {form.HScroll3, form.lblAntiRipEl, "Anti-ripple, elevation",
         "Changes in elevation below this leave the rotor at rest."},
    };
    int place = 0;
    for (const Threshold& threshold : thresholds) {
        CaptionLabel* name = fixedText(threshold.name, threshold.tip);
        grid->addLayout(slider(adapters, threshold.bar, threshold.value, name,
                               {threshold.name, threshold.tip, kScrollKeys}, "0000"),
                        2 + place / 2, place % 2);
        ++place;
    }
    body().addLayout(grid, 1);
}

} // namespace ui
