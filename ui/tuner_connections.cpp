#include "ui/card.h"
#include "ui/dialogs.h"
#include "ui/radio_view.h"

#include <QGridLayout>

namespace ui {

namespace {

constexpr double kDataSize = 1.8;
constexpr int kOptionColumn = 0, kOnColumn = 1, kOffColumn = 2, kStateColumn = 3;

void addTest(QGridLayout& grid, int at, Adapters& adapters, const QString& program, form::Button& on,
             form::Button& off, form::Label& state) {
    grid.addWidget(
        adapters.button(on, {"Test " + program, "Connects to " + program + " to test it.", "Space"}), at,
        kOnColumn);
    grid.addWidget(adapters.button(off, {"End the test of " + program, "Ends the test.", "Space"}), at,
                   kOffColumn);
    CaptionLabel* label = adapters.label(
        state, {"State of the test of " + program, "Whether " + program + " answers."}, "MConn.M|MDisc.M");
    label->setAlignment(Qt::AlignCenter);
    grid.addWidget(label, at, kStateColumn);
}

void addPort(QGridLayout& grid, int at, Adapters& adapters, form::FrmTunerConn& form) {
    LineEdit* port =
        adapters.textBox(form.txtN1mmPortNumb,
                         {"Port of N1MM Logger", "The UDP port of N1MM Logger.", "Alt+C takes it"}, "000000");
    grid.addWidget(port, at, kOnColumn);
    grid.addWidget(adapters.button(form.Command1,
                                   {"Change the port", "Listens at the port that you typed.", "Alt+C"},
                                   "Change"),
                   at, kOffColumn);
    CaptionLabel* listening =
        adapters.label(form.lblListening, {"Listening", "The program listens at this port."}, "Listening");
    listening->setTone(CaptionLabel::Tone::Quiet);
    listening->setAlignment(Qt::AlignCenter);
    grid.addWidget(listening, at, kStateColumn);
}

/// The option and, beside it, where its daemon is.
QHBoxLayout* hamlib(form::FrmTunerConn& form, Adapters& adapters, OptionDot* dot) {
    QHBoxLayout* line = row();
    line->addWidget(dot);
    line->addWidget(adapters.textBox(form.txtRigctld,
                                     {"Address of rigctld",
                                      "Where Hamlib's rigctld runs: host, or host:port. Grey when the "
                                      "command line gave it.",
                                      "Tab"},
                                     "127.0.0.1:45320"),
                    1);
    return line;
}

Card* programs(form::FrmTunerConn& form, Adapters& adapters) {
    auto* card =
        new Card("Frequency from", "The program that reports the radio's frequency, and a test of it.");
    card->body().addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kGrid);
    grid->setVerticalSpacing(kGrid);
    grid->setColumnStretch(kOptionColumn, 1);

    struct Choice {
        form::OptionButton& option;
        const char* program;
        const char* key;
    };
    const Choice choices[] = {{form.optHamDeluxe, "Ham Radio Deluxe", "Alt+H"},
                              {form.optLog32, "Logger32", "Alt+L"},
                              {form.optN1MM, "N1MM Logger", "Alt+N"},
                              {form.optHamlib, "Hamlib", "Alt+B"}};
    std::array<OptionDot*, 4> dots{};
    for (int i = 0; i < 4; ++i) {
        const Choice& choice = choices[i];
        const QString program = choice.program;
        dots.at(static_cast<std::size_t>(i)) =
            adapters.option(choice.option, {program, program + " reports the frequency.", choice.key});
        // In the order of Tab.
        if (i < 3) grid->addWidget(dots.at(static_cast<std::size_t>(i)), i, kOptionColumn);
        if (i == 3) grid->addLayout(hamlib(form, adapters, dots[3]), i, kOptionColumn);
        if (i == 0) addTest(*grid, i, adapters, program, form.cmdOn, form.cmdOff, form.lblConn);
        if (i == 1)
            addTest(*grid, i, adapters, program, form.cmdOnLog32, form.cmdOffLog32, form.lblConnLog32);
        if (i == 2) addPort(*grid, i, adapters, form);
        if (i == 3)
            addTest(*grid, i, adapters, program, form.cmdOnHamlib, form.cmdOffHamlib, form.lblConnHamlib);
    }
    dots[0]->setNeighbours(nullptr, dots[1]);
    dots[1]->setNeighbours(dots[0], dots[2]);
    dots[2]->setNeighbours(dots[1], dots[3]);
    dots[3]->setNeighbours(dots[2], nullptr);

    CaptionLabel* error =
        adapters.label(form.lblPortError, {"What is wrong", "What is wrong with the port or the address."},
                       "Insert a port from 1 to 32767.");
    grid->addWidget(error, 4, kOptionColumn, 1, kStateColumn + 1);
    card->body().addLayout(grid);
    return card;
}

Card* received(form::FrmTunerConn& form, Adapters& adapters) {
    auto* card = new Card("Received", "What the tested program reports.");
    QHBoxLayout* line = row();
    line->addWidget(groupTitle(card->accessibleName(), card->toolTip()));
    const auto data = [&](form::Label& control, const char* program) {
        CaptionLabel* label = adapters.label(
            control,
            {QString("Received from %1").arg(program), QString("The frequency from %1.").arg(program)},
            "144.200.000 MHz");
        label->setFont(scaledFont(label->font(), kDataSize, QFont::DemiBold));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return label;
    };
    line->addWidget(pile({data(form.lblDDE, "Ham Radio Deluxe"), data(form.lblLog32Data, "Logger32"),
                          data(form.lblN1mmData, "N1MM Logger"), data(form.lblHamlibData, "Hamlib")}),
                    1);
    card->body().addLayout(line);
    return card;
}

} // namespace

void layOut(Dialog& window, form::FrmTunerConn& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->addWidget(programs(form, adapters));
    all->addWidget(received(form, adapters));
    all->addWidget(window.addButtons(form.cmdSaveTConf, {"Save", "Saves program, port and address.", "Enter"},
                                     form.cmdExitTConf, {"Cancel", "Leaves everything as it was.", "Esc"}));
    // What was chosen before there was a window.
    const form::OptionButton* chosen = &form.optHamDeluxe;
    const std::pair<form::OptionButton&, form::Label&> programs[] = {{form.optLog32, form.lblLog32Data},
                                                                     {form.optN1MM, form.lblN1mmData},
                                                                     {form.optHamlib, form.lblHamlibData}};
    for (const auto& [option, received] : programs) {
        if (!option.Value) continue;
        chosen = &option;
        received.bringToFront();
    }
    window.findChild<QWidget*>(shown(chosen->name()))->setFocus();
}

} // namespace ui
