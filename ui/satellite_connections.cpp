#include "ui/card.h"
#include "ui/dialogs.h"

#include <QGridLayout>

namespace ui {

namespace {

CaptionLabel* text(Adapters& adapters, form::Label& control) {
    const QString caption = shown(control.Caption);
    return adapters.label(control, {caption, caption}, caption);
}

} // namespace

void layOut(Dialog& window, form::FrmSatConn& form) {
    Adapters& adapters = window.adapters();
    auto* card = new Card("Tracking program", "The program whose data turn the rotor.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * kGrid);
    grid->setVerticalSpacing(kGrid);
    OptionDot* orbitron =
        adapters.option(form.optOrbitron, {"Orbitron", "The data have the format of Orbitron.", "Alt+O"});
    OptionDot* satPc32 =
        adapters.option(form.optSatPc32, {"SatPC32", "The data have the format of SatPC32.", "Alt+P"});
    orbitron->setNeighbours(nullptr, satPc32);
    satPc32->setNeighbours(orbitron, nullptr);
    grid->addWidget(orbitron, 0, 0);
    grid->addWidget(satPc32, 1, 0);
    int line = 0;
    for (form::Label* what : {&form.Label3, &form.Label4}) {
        CaptionLabel* label = text(adapters, *what);
        label->setTone(CaptionLabel::Tone::Quiet);
        grid->addWidget(label, line++, 1, 1, 2);
    }
    grid->addWidget(text(adapters, form.Label1), 2, 0);
    grid->addWidget(
        adapters.textBox(form.txtServerPort,
                         {"Port of the tracking server",
                          "The TCP port of the tracking server; 0 stands for the default.", "Tab"},
                         "000000"),
        2, 1);
    CaptionLabel* usual = text(adapters, form.Label2);
    usual->setTone(CaptionLabel::Tone::Quiet);
    grid->addWidget(usual, 2, 2);
    grid->addWidget(adapters.label(form.lblPortError,
                                   {"What is wrong with the port", "What is wrong with the port."},
                                   "Insert a port from 0 to 32767"),
                    3, 0, 1, 3);
    card->body().addLayout(grid);
    QVBoxLayout* all = window.column();
    all->addWidget(card);
    all->addWidget(window.addButtons(form.cmdSaveSatCfg, {"Save", "Saves program and port.", "Enter"},
                                     form.cmdExitSatConn, {"Cancel", "Leaves everything as it was.", "Esc"}));
    (form.optSatPc32.Value ? satPc32 : orbitron)->setFocus();
}

void layOut(Dialog& window, form::FrmServer& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->addWidget(adapters.checkBox(
        form.chkAttivaServer,
        {"Data server", "The program's own data server, which is not ready yet.", "Space"}));
    QHBoxLayout* line = row();
    line->addWidget(text(adapters, form.Label1));
    line->addWidget(adapters.textBox(
        form.txtPort, {"Port of the data server", "The port of the program's own data server.", "Tab"},
        "000000"));
    line->addStretch(1);
    all->addLayout(line);
    CaptionLabel* status = text(adapters, form.lblServerStatus);
    status->setTone(CaptionLabel::Tone::Quiet);
    all->addWidget(status);
}

} // namespace ui
