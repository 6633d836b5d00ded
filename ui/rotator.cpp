#include "ui/card.h"
#include "ui/dialogs.h"

#include <QGridLayout>

namespace ui {

void layOut(Dialog& window, form::FrmRotator& form) {
    Adapters& adapters = window.adapters();
    auto* card = new Card("Rotator", "What the machine can do, in degrees of the machine.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * kGrid);
    grid->setVerticalSpacing(kGrid);
    struct Field {
        form::TextBox& box;
        const char* name;
        const char* tip;
    };
    int line = 0;
    for (const Field& field :
         {Field{form.txtAzimuth, "Azimuth range",
                "The range of azimuth: 0..360, or -90..360 for a rotator of 450 degrees. Every "
                "motion stops at its ends."},
          Field{form.txtElevation, "Elevation range",
                "The range of elevation: 0..90, or 0..180 for a rotator that goes over the top."},
          Field{form.txtFollowFrom, "Follow from elevation",
                "The elevation of the target from which azimuth is followed; below, the antenna stands."},
          Field{form.txtSilence, "Target lost after (s)",
                "The target is lost after so many seconds without data from the program."},
          Field{form.txtPark, "Parking place", "Azimuth and elevation of the machine, such as 180,0."}}) {
        grid->addWidget(fixedText(field.name, field.tip), line, 0);
        grid->addWidget(adapters.textBox(field.box, {field.name, field.tip, "Tab"}, "-180.00..360.00"),
                        line++, 1);
    }
    grid->addWidget(
        adapters.checkBox(
            form.chkParkAfterPass,
            {"Park after a pass", "The antenna parks when the target that it followed has set.", "Alt+P"}),
        line++, 0, 1, 2);
    grid->addWidget(
        adapters.checkBox(form.chkHoldElevation,
                          {"Hold elevation",
                           "The elevation engine keeps its coils on while it stands, so that a heavy antenna "
                           "does not sink.",
                           "Alt+H"}),
        line, 0);
    grid->addWidget(
        fixedText("Warning: its coils stay hot", "An engine that holds stays energised and gets hot."),
        line++, 1);
    CaptionLabel* error =
        adapters.label(form.lblRotatorError, {"What is wrong", "What is wrong with the settings."},
                       "\"-180..360\" is not a range such as 0..360, which begins at -180 to 0 and ends");
    grid->addWidget(error, line, 0, 1, 2);
    card->body().addLayout(grid);
    QVBoxLayout* all = window.column();
    all->addWidget(card);
    all->addWidget(window.addButtons(form.cmdSaveRotator,
                                     {"Save", "Uses these settings and saves them.", "Enter"},
                                     form.cmdExitRotator, {"Cancel", "Leaves everything as it was.", "Esc"}));
    window.findChild<QWidget*>(shown(form.txtAzimuth.name()))->setFocus();
}

} // namespace ui
