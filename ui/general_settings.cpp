#include "ui/card.h"
#include "ui/dialogs.h"

#include <QGridLayout>

namespace ui {

namespace {

Card* keys(form::FrmGenSet& form, Adapters& adapters) {
    auto* card = new Card("Keyboard Commands:", "The letters that jog the engines, a to z.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * kGrid);
    grid->setVerticalSpacing(kGrid);
    for (int column = 1; column <= 2; ++column) {
        grid->setColumnMinimumWidth(column, widest(card->fontMetrics(), "counter-clockwise") + kGrid);
    }
    grid->addWidget(fixedText("counter-clockwise"), 0, 1);
    grid->addWidget(fixedText("clockwise"), 0, 2);
    struct Line {
        const char* name;
        form::TextBox& counterClockwise;
        form::TextBox& clockwise;
    };
    const Line lines[] = {{"Stepper 1 (Tune - Azimut):", form.txtCCW1, form.txtCW1},
                          {"Stepper 2 (Load - Elev.):", form.txtCCW2, form.txtCW2}};
    int at = 1;
    for (const Line& line : lines) {
        const QString name = line.name;
        grid->addWidget(new CaptionLabel(name), at, 0);
        grid->addWidget(adapters.textBox(line.counterClockwise,
                                         {name + " counter-clockwise",
                                          "The letter that turns this stepper counter-clockwise.", "a to z"},
                                         "WWW"),
                        at, 1);
        grid->addWidget(
            adapters.textBox(line.clockwise,
                             {name + " clockwise", "The letter that turns this stepper clockwise.", "a to z"},
                             "WWW"),
            at, 2);
        ++at;
    }
    card->body().addLayout(grid);
    return card;
}

Card* colours(form::FrmGenSet& form, Adapters& adapters) {
    auto* card = new Card("Change Display Color", "The colours of the positions in the main window.");
    QHBoxLayout* line = row();
    line->addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    line->addStretch(1);
    line->addWidget(adapters.comboBox(
        form.cmbColor, {"Change display color", "Choose what to change. The main window shows it at once.",
                        "Up and Down, then Enter"}));
    card->body().addLayout(line);
    return card;
}

Card* habits(form::FrmGenSet& form, Adapters& adapters) {
    auto* card = new Card("Start and exit", "What is kept from one run to the next, and what is heard.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    card->body().addWidget(adapters.checkBox(
        form.chkSalvaM, {"Save positions on exit", "Saves both positions when the program ends.", "Alt+X"}));
    card->body().addWidget(
        adapters.checkBox(form.chkCaricaInAvvio, {"Load positions on start",
                                                  "The program starts with the saved positions.", "Alt+L"}));
    card->body().addWidget(adapters.checkBox(
        form.chkAlarmOnOff,
        {"Audio alarm", "A sound announces that the radio has changed its band.", "Alt+A"}));
    return card;
}

Card* tuner(form::FrmGenSet& form, Adapters& adapters) {
    auto* card = new Card("Tuner", "How Coil Tuner and Tune & Load move.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    card->body().addWidget(adapters.checkBox(
        form.chkWaitTransmitting,
        {"No movement while transmitting",
         "Recalls wait while Hamlib or N1MM Logger reports that the radio transmits.", "Alt+M"}));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kGrid);
    grid->setColumnStretch(3, 1);
    struct Line {
        const char* name;
        form::TextBox& steps;
        form::Label& units;
    };
    const Line lines[] = {{"Backlash of engine 1", form.txtBacklash1, form.lblBacklash1},
                          {"Backlash of engine 2", form.txtBacklash2, form.lblBacklash2}};
    int at = 0;
    for (const Line& line : lines) {
        const QString tip =
            "The play of the gear, in steps. A recall that moves down goes that far below and comes back "
            "up, so that each position is reached from below.";
        grid->addWidget(fixedText(line.name, tip), at, 0);
        grid->addWidget(adapters.textBox(line.steps, {line.name, tip, "0 to 9"}, "00000"), at, 1);
        grid->addWidget(fixedText("steps", tip), at, 2);
        grid->addWidget(
            adapters.label(line.units, {QString(line.name) + " in units", tip}, "0 to 10000 steps"), at, 3);
        ++at;
    }
    card->body().addLayout(grid);
    return card;
}

} // namespace

void layOut(Dialog& window, form::FrmGenSet& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->addWidget(keys(form, adapters));
    all->addWidget(colours(form, adapters));
    all->addWidget(habits(form, adapters));
    all->addWidget(tuner(form, adapters));
    all->addWidget(window.addButtons(form.cmdSalvaGenSet, {"Save", "Saves these settings.", "Enter"},
                                     form.cmdExitGen, {"Cancel", "Leaves everything as it was.", "Esc"}));
}

} // namespace ui
