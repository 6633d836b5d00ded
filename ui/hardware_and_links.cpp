#include "ui/card.h"
#include "ui/dialogs.h"

#include <QGridLayout>

namespace ui {

namespace {

// The longest ones.
constexpr const char* kN1mmName = "N1MM Logger, listen at";
constexpr const char* kN1mmHint = "127.0.0.1, or 0.0.0.0 for all";

constexpr int kNameColumn = 0, kChoiceColumn = 1, kBesideColumn = 2;

QGridLayout* addGrid(Card& card) {
    card.body().addWidget(groupTitle(card.accessibleName(), card.toolTip()));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * kGrid);
    grid->setVerticalSpacing(kGrid);
    grid->setColumnStretch(kChoiceColumn, 1);
    // The same columns in both groups.
    grid->setColumnMinimumWidth(kNameColumn, widest(card.fontMetrics(), kN1mmName));
    grid->setColumnMinimumWidth(kBesideColumn, widest(card.fontMetrics(), kN1mmHint));
    card.body().addLayout(grid);
    return grid;
}

CaptionLabel* hint(const QString& text) {
    CaptionLabel* label = fixedText(text, text);
    label->setTone(CaptionLabel::Tone::Quiet);
    return label;
}

Card* devices(form::FrmHardware& form, Adapters& adapters) {
    auto* card = new Card("Outputs", "The devices that drive the coils.");
    QGridLayout* grid = addGrid(*card);
    const QString port =
        "The device that drives the coils. Automatic: the printer port /dev/parport0 where it is "
        "there and free, else simulated.";
    grid->addWidget(fixedText("Outputs", port), 0, kNameColumn);
    grid->addWidget(adapters.comboBox(form.cmbPort, {"Outputs", port, "Up and Down"}), 0, kChoiceColumn);
    grid->addWidget(
        adapters.textBox(form.txtPortAddress,
                         {"I/O address, pins or lines",
                          "The I/O address of a port that no driver holds, such as 0x378; the Arduino's "
                          "pins, or the chip's lines, of coils 1 to 8.",
                          "Tab"},
                         "17,27,22,23,24,25,16,26"),
        0, kBesideColumn);
    const QString level =
        "The level that energises a coil. Automatic: a 1 on an Arduino and on pins, a 0 on a "
        "printer port.";
    grid->addWidget(fixedText("Coils on at", level), 1, kNameColumn);
    grid->addWidget(adapters.comboBox(form.cmbCoilsOn, {"Coils on at", level, "Up and Down"}), 1,
                    kChoiceColumn);
    CaptionLabel* remark =
        adapters.label(form.lblOutputs, {"Remark on the outputs", "What to know about the chosen outputs."},
                       "Low: all coils are on while Twinstep is not connected");
    grid->addWidget(remark, 2, kChoiceColumn, 1, 2);
    const QString board = "The USB board that drives the coils too, while it is switched on in the window.";
    grid->addWidget(fixedText("USB board", board), 3, kNameColumn);
    grid->addWidget(adapters.comboBox(form.cmbUsb, {"USB board", board, "Up and Down"}), 3, kChoiceColumn);

    const QString test = "Lights the four coils of an engine one after the other.";
    grid->addWidget(fixedText("Coils", test), 4, kNameColumn);
    QHBoxLayout* tests = row();
    struct Test {
        form::Button& button;
        const char* name;
        const char* tip;
        const char* key;
    };
    for (const Test& each : {Test{form.cmdTestA, "Test engine 1",
                                  "Lights the four coils of engine 1 one after the other.", "Alt+1"},
                             Test{form.cmdTestB, "Test engine 2",
                                  "Lights the four coils of engine 2 one after the other.", "Alt+2"}}) {
        tests->addWidget(adapters.button(each.button, {each.name, each.tip, each.key}, "Test 1|Stop"));
    }
    tests->addStretch(1);
    grid->addLayout(tests, 4, kChoiceColumn);
    grid->addWidget(adapters.label(form.lblTest,
                                   {"Coil", "The coil that is lit, or what the test waits for."},
                                   "Elements Coil: coil 4"),
                    4, kBesideColumn);
    return card;
}

Card* links(form::FrmHardware& form, Adapters& adapters) {
    auto* card =
        new Card("Links", "Where frequency and tracking data come from, and who else may turn the antenna.");
    QGridLayout* grid = addGrid(*card);
    struct Link {
        form::TextBox& box;
        const char* name;
        const char* tip;
        const char* hint;
    };
    int line = 0;
    for (const Link& link :
         {Link{form.txtN1mmListen, kN1mmName,
               "This computer's address at which N1MM Logger's datagrams are taken, from the next connecting "
               "on. "
               "127.0.0.1: from this computer alone; 0.0.0.0: from everywhere.",
               kN1mmHint},
          Link{form.txtTrackingServer, "Tracking server", "Host name or address of the tracking server.",
               "Host name or address"},
          Link{form.txtBridge, "Bridge",
               "Where twinstep-bridge runs, beside Ham Radio Deluxe, Logger32, Orbitron or SatPC32.",
               "Host, or host:port"},
          Link{form.txtRotctld, "rotctld, listen at",
               "Where Gpredict and other programs that know Hamlib's rotctld reach the rotor, in Satellite "
               "Rotor. "
               "127.0.0.1: from this computer alone; off: not at all.",
               "Port, address:port, or off"},
          Link{form.txtRotctldAllow, "rotctld, allowed",
               "The addresses of the other computers that may turn the antenna, separated by commas. This "
               "computer always may.",
               "Addresses of others, or none"}}) {
        grid->addWidget(fixedText(link.name, link.tip), line, kNameColumn);
        grid->addWidget(
            adapters.textBox(link.box, {link.name, link.tip, "Tab"}, "station-computer.local:7380"), line,
            kChoiceColumn);
        grid->addWidget(hint(link.hint), line++, kBesideColumn);
    }
    CaptionLabel* state = adapters.label(
        form.lblBridge,
        {"State of the bridge", "Whether the controller and the bridge have found each other."},
        "bridge station-computer.local:7380 connected");
    state->setTone(CaptionLabel::Tone::Quiet);
    grid->addWidget(state, line, kChoiceColumn, 1, 2);
    return card;
}

} // namespace

void layOut(Dialog& window, form::FrmHardware& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->addWidget(devices(form, adapters));
    all->addWidget(links(form, adapters));
    CaptionLabel* fixed = adapters.label(
        form.lblFixed, {"Given on the command line", "It holds until the program is started without it."},
        shown(form.lblFixed.Caption));
    fixed->setTone(CaptionLabel::Tone::Quiet);
    all->addWidget(fixed);
    all->addWidget(window.addButtons(
        form.cmdSaveHardware,
        {"Save", "Uses these devices and links, and keeps them for the next start.", "Enter"},
        form.cmdExitHardware, {"Cancel", "Goes back to the devices and links as they were.", "Esc"}));
    window.findChild<QWidget*>(shown(form.cmbPort.name()))->setFocus();
}

} // namespace ui
