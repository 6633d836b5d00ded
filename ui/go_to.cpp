#include "ui/card.h"
#include "ui/dialogs.h"

#include <QGridLayout>

namespace ui {

void layOut(Dialog& window, form::FrmGoTo& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kGrid);
    grid->setVerticalSpacing(kGrid);
    grid->setColumnStretch(1, 1);
    struct Line {
        form::Label& name;
        form::TextBox& box;
        form::Label& unit;
        const char* what;
    };
    int at = 0;
    for (const Line& line : {Line{form.lblGoToA, form.txtGoToA, form.lblGoToUnitA, "engine 1"},
                             Line{form.lblGoToB, form.txtGoToB, form.lblGoToUnitB, "engine 2"}}) {
        const QString what = line.what;
        grid->addWidget(adapters.label(line.name, {"Name of " + what, "The name of " + what + "."},
                                       "Engine 2|Elevation|Engine A"),
                        at, 0);
        LineEdit* box =
            adapters.textBox(line.box,
                             {"Position for " + what,
                              "The position to go to. Empty: the engine stays where it is.", "Enter goes"},
                             "-000.00M");
        box->setFont(scaledFont(box->font(), 1.5, QFont::DemiBold));
        box->setAlignment(Qt::AlignRight);
        grid->addWidget(box, at, 1);
        grid->addWidget(
            adapters.label(line.unit, {"Unit of " + what, "The unit of the position."}, "dots|deg"), at, 2);
        ++at;
    }
    all->addLayout(grid);
    CaptionLabel* hint =
        adapters.label(form.lblGoToHint, {"Hint", "An empty box leaves its engine where it stands."},
                       shown(form.lblGoToHint.Caption));
    hint->setTone(CaptionLabel::Tone::Quiet);
    all->addWidget(hint);
    all->addWidget(adapters.label(form.lblGoToError, {"What is wrong", "Why nothing moves."},
                                  "Elevation does not start: enter its slow or fast speed"));
    all->addWidget(window.addButtons(form.cmdGo, {"Go", "Moves to the position, as a recall does.", "Enter"},
                                     form.cmdExitGoTo, {"Cancel", "Moves nothing.", "Esc"}));
    window.findChild<QWidget*>(shown(form.txtGoToA.name()))->setFocus();
}

} // namespace ui
