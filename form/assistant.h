#pragma once

#include "form/controls.h"
#include "form/timer.h"

#include <functional>
#include <optional>
#include <utility>

namespace form {

/// What the set-up assistant shows of one engine. `s` ends the names of its controls.
struct AssistantEngine {
    AssistantEngine(Form& form, const std::string& s)
        : lblName(form, "lblName" + s), cmdCoils(form, "cmdCoils" + s, "Test coils"),
          cmdTurn(form, "cmdTurn" + s, "Turn"), lamp(form, "coil" + s), lblCoil(form, "lblCoil" + s),
          cmdRight(form, "cmdRight" + s, "The right way"), cmdWrong(form, "cmdWrong" + s, "The other way"),
          cmdTrembled(form, "cmdTrembled" + s, "It trembled"), cmdStood(form, "cmdStood" + s, "It stood"),
          lblWires(form, "lblWires" + s), txtStepsR(form, "txtStepsR" + s),
          chkHalf(form, "chkHalf" + s, "Half steps"), txtUnitsR(form, "txtUnitsR" + s),
          lblUnitsR(form, "lblUnitsR" + s), barTurn(form, "barTurn" + s),
          cmdOnce(form, "cmdOnce" + s, "Turn once"), txtAsked(form, "txtAsked" + s),
          cmdMove(form, "cmdMove" + s, "Move"), txtMeasured(form, "txtMeasured" + s),
          cmdCorrect(form, "cmdCorrect" + s, "Correct"), lblCorrected(form, "lblCorrected" + s),
          txtSlow(form, "txtSlow" + s), txtFast(form, "txtFast" + s),
          cmdTryBackward(form, "cmdTryBackward" + s, "<< faster"),
          cmdTryForward(form, "cmdTryForward" + s, "faster >>"), barTry(form, "barTry" + s),
          lblTry(form, "lblTry" + s), lblPosition(form, "lblPosition" + s),
          cmdBackward(form, "cmdBackward" + s, "<<"), cmdForward(form, "cmdForward" + s, ">>"),
          cmdZero(form, "cmdZero" + s, "This is zero") {
        txtStepsR.MaxLength = txtUnitsR.MaxLength = kLongest;
        txtAsked.MaxLength = txtMeasured.MaxLength = kLongest;
        txtSlow.MaxLength = txtFast.MaxLength = kLongest;
    }

    static constexpr int kLongest = 7; // characters of an entry

    Label lblName;

    // Outputs.
    Button cmdCoils, cmdTurn;
    ControlArray<Shape, 4> lamp;
    Label lblCoil;                                    // the outputs that the coils are on
    Button cmdRight, cmdWrong, cmdTrembled, cmdStood; // which way it turned
    Label lblWires;                                   // what to do about it
    std::optional<std::pair<int, int>> wiresToSwap;   // 1 to 4, while lblWires names them

    // Motor.
    TextBox txtStepsR;
    CheckBox chkHalf;
    TextBox txtUnitsR;
    Label lblUnitsR;
    Bar barTurn; // where the shaft stands, of a whole turn
    Button cmdOnce;
    TextBox txtAsked;
    Button cmdMove;
    TextBox txtMeasured;
    Button cmdCorrect;
    Label lblCorrected;

    // Speeds, in steps per second.
    TextBox txtSlow, txtFast;
    Button cmdTryBackward, cmdTryForward;
    Bar barTry; // of the way to the shortest period
    Label lblTry;

    // Zero and positions.
    Label lblPosition;
    Button cmdBackward, cmdForward;
    Button cmdZero;
};

/// The set-up assistant: page by page, for both engines.
struct FrmAssistant : Form {
    explicit FrmAssistant(platform::Timers& timers)
        : Form("frmAssistant"), tmrCoils(*this, "tmrCoils", timers), tmrTry(*this, "tmrTry", timers),
          tmrLook(*this, "tmrLook", timers, kLookMilliseconds) {
        Caption = "Set-up Assistant";
        lblTrouble.ForeColor = kAmber;
    }

    static constexpr int kLookMilliseconds = 200; // between two updates of what is shown live
    enum Page { kFunction = 1, kOutputs, kMotor, kSpeeds, kPositions, kSource, kSaving };
    static constexpr int kPages = kSaving;

    ControlArray<Frame, kPages> page{*this, "pageAssistant"}; // one of them is visible
    Label lblPage{*this, "lblPage"};
    Label lblAsk{*this, "lblAsk"};         // what the page is about
    Label lblTrouble{*this, "lblTrouble"}; // what is wrong with the entries
    Button cmdStopAll{*this, "cmdStopAll", "Stop"};
    Button cmdBack{*this, "cmdBack", "&Back"}, cmdSkip{*this, "cmdSkip", "&Skip"};
    Button cmdNext{*this, "cmdNext", "&Next"};
    Button cmdExitAssistant{*this, "cmdExitAssistant", "Cancel"};
    AssistantEngine engineA{*this, "A"}, engineB{*this, "B"};
    Timer tmrCoils, tmrTry, tmrLook;

    OptionButton optCoilTuner{*this, "optCoilTuner", "Coil Tuner"};
    OptionButton optTuneLoad{*this, "optTuneLoad", "Tune && Load"};
    OptionButton optRotor{*this, "optRotor", "Satellite Rotor"};

    Label lblOutputs{*this, "lblOutputs"}; // where the outputs go
    Button cmdHardware{*this, "cmdHardware", "Choose the outputs…"};

    ComboBox cmbMemory{*this,
                       "cmbMemory",
                       {"Memory 1", "Memory 2", "Memory 3", "Memory 4", "Memory 5", "Memory 6", "Memory 7",
                        "Memory 8", "Memory 9", "Memory 10"}};
    Button cmdStore{*this, "cmdStore", "Store…"}, cmdRecall{*this, "cmdRecall", "Recall"};
    Label lblMemory{*this, "lblMemory"}; // what the memory holds
    Button cmdRotator{*this, "cmdRotator", "Ranges and parking…"};

    Button cmdProgram{*this, "cmdProgram", "Choose the program…"};
    Button cmdLink{*this, "cmdLink", "Connect"};
    Label lblProgram{*this, "lblProgram"}, lblHeard{*this, "lblHeard"};

    CheckBox chkOffAlone{*this, "chkOffAlone", "Switch the outputs off after"};
    TextBox txtOffSeconds{*this, "txtOffSeconds"};
    CheckBox chkKeepPositions{*this, "chkKeepPositions", "Save the positions at exit"};
    CheckBox chkLoadPositions{*this, "chkLoadPositions", "Load them at the start"};

    /// The window has lost the keyboard: nothing may go on.
    std::function<void()> onPause;
    /// Stops what runs. False if nothing ran.
    std::function<bool()> onEscape;
};

} // namespace form
