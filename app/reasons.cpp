#include "app/reasons.h"

#include <array>

namespace app {

namespace {

constexpr const char* kChooseProgram = "Choose a program first: Tuner Connections, Ctrl+T";

struct JogLetter {
    form::Button& button;
    const std::string& letter;
    const char* move;
};

/// Names the letters that more than one move has.
void explainLetters(form::Form1& form) {
    const std::array<JogLetter, 4> letters = {{{form.cmdAvMan, form.strCW1, ">> of "},
                                               {form.cmdIndMan, form.strCCW1, "<< of "},
                                               {form.cmdBAvMan, form.strCW2, ">> of "},
                                               {form.cmdBIndMan, form.strCCW2, "<< of "}}};
    for (std::size_t i = 0; i < letters.size(); ++i) {
        std::string others;
        for (std::size_t k = 0; k < letters.size(); ++k) {
            if (k == i || letters[i].letter.empty() || letters[k].letter != letters[i].letter) continue;
            const form::Label& engine = k < 2 ? form.lblEngineA : form.lblEngineB;
            others += (others.empty() ? "" : ", ") + std::string(letters[k].move) + engine.Caption.get();
        }
        letters[i].button.ToolTip = others.empty() ? ""
                                                   : "Its letter " + letters[i].letter + " is also that of " +
                                                         others + ": General Settings, Ctrl+G";
    }
}

} // namespace

void showReasons(form::Form1& form, bool noBoard) {
    const bool noProgram =
        form.intConnProgrTuner < form::kHamRadioDeluxe || form.intConnProgrTuner > form::kHamlib;
    form.cmdAutoMemConn.ToolTip = noProgram ? kChooseProgram : "";
    const std::string connect = noProgram ? kChooseProgram : "Connect the program first: F10";
    for (form::CheckBox* box : {&form.chkAutoMemOnOff, &form.chkFastMemory})
        box->ToolTip = box->Enabled ? "" : connect;
    form.cmdOff.ToolTip = form.cmdOff.Enabled ? "" : "An engine runs: stop it first, Esc";
    form.chkUsbOn.ToolTip =
        noBoard && !form.chkUsbOn.ticked() ? "Choose a board first: Hardware and links, Ctrl+H" : "";
    const bool noFormat = form.intSatSource < 1;
    form.lblOpenCom.ToolTip = noFormat ? "Choose the tracking program first: Settings, Sat Connections" : "";
    form.chkRotOnOff.ToolTip =
        form.chkRotOnOff.Enabled ? ""
        : noFormat ? "Nothing sends targets. Choose the tracking program: Settings, Sat Connections"
                   : "Nothing sends targets: connect a tracking program";
    explainLetters(form);
}

} // namespace app
