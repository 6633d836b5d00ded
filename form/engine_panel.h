#pragma once

#include "form/controls.h"
#include "form/notice.h"
#include "form/timer.h"
#include "runtime/checked.h"

#include <cstdint>

namespace form {

using runtime::Byte;
using runtime::Int16;
using runtime::Int32;

/// Directions of an engine, the values of intDirA and intDirB; any other value leaves the coils unwritten.
constexpr int kForward = 1;
constexpr int kBackward = 2;

/// Both engines: their state, and the controls that show and move them.
struct EnginePanel {
    EnginePanel(Form& form, platform::Timers& timers)
        : form_(form), Timer1(form, "Timer1", timers), Timer2(form, "Timer2", timers),
          Timer3(form, "Timer3", timers), Timer4(form, "Timer4", timers),
          tmrOutputs(form, "tmrOutputs", timers, kOutputsCheckMilliseconds),
          entryNoticeA(form, "entryNoticeA", timers), entryNoticeB(form, "entryNoticeB", timers) {}

    static constexpr int kOutputsCheckMilliseconds = 1000;

  private:
    Form& form_;

  public:
    // Positions: user units (mm or dots), and degrees in Satellite Rotor.
    float sngPosA = 0, sngPosB = 0;
    float sngPosAz = 0, sngPosEl = 0;

    // Sequencing. Phase indexes name the phase that the next tick writes; full and half step keep their own.
    bool bolHalfStepA = false, bolHalfStepB = false;
    Byte bytMoltA = 1, bytMoltB = 1; // 1 in full step, 2 in half step
    Int16 intDirA, intDirB;
    Int16 intFaseA, intFaseB;                    // 1 to 4
    Int16 intFaseHalfA, intFaseHalfB;            // 1 to 8
    Int16 intUltFaseA, intUltFaseB;              // last full-step phase written
    Int16 intUltFaseHalfA, intUltFaseHalfB;      // last half-step phase written
    Int32 lngContaStep;                          // steps of both engines together
    std::int64_t halfStepsA = 0, halfStepsB = 0; // made since the start, forward minus backward
    bool bolAvvisoReset = false;                 // a change of step mode warns about the position

    // Targets of a recall.
    bool bolMemA = false, bolMemB = false; // running towards the target
    float sngTargetA = 0, sngTargetB = 0;

    // Targets in degrees, in Satellite Rotor.
    bool bolTargetAz = false, bolTargetEl = false; // running towards the target
    float sngTargetAz = 0, sngTargetEl = 0;

    // Parameters: full steps per revolution, units per revolution, steps per second, milliseconds per step.
    Int16 intStepsA, intStepsB;
    float sngMMGiroA = 0, sngMMGiroB = 0;
    Int16 intVelAltaA, intVelAltaB, intVelBassaA, intVelBassaB;
    Int16 intTickAltaA, intTickAltaB, intTickBassaA, intTickBassaB;
    double dblStepsGiroA = 0;     // engine A's full steps for 360 units
    Int16 intVelRotA, intVelRotB; // slow speeds as the rotor function reads them at each stop

    // Motion.
    bool bolVelAltaA = false, bolVelAltaB = false; // fast speed selected
    Byte bytInsPosSel;                             // the position that the "New Value" dialog edits, 1 to 4
    bool bolManualA = false, bolManualB = false;   // moved by a jog button

    // Outputs: the coil values last handed to the USB board, A in bits 0 to 3, B in bits 4 to 7.
    Int16 intPesoA, intPesoB;
    bool bolUsbOn = false;     // a card was found
    bool bolUsbBlocco = false; // keeps the USB board from being written

    Timer Timer1;     // A forward
    Timer Timer2;     // A backward
    Timer Timer3;     // B backward: the numbering is not parallel between the engines
    Timer Timer4;     // B forward
    Timer tmrOutputs; // checks the devices of the outputs

    Label lblEngineA{form_, "lblEngineA", "Engine 1"}, lblEngineB{form_, "lblEngineB", "Engine 2"};
    Shape out1{form_, "out1"}, out2{form_, "out2"}, out3{form_, "out3"}, out4{form_, "out4"};
    Shape out1B{form_, "out1B"}, out2B{form_, "out2B"}, out3B{form_, "out3B"}, out4B{form_, "out4B"};

    Shape shpDisplayA{form_, "shpDisplayA"}, shpDisplayB{form_, "shpDisplayB"}; // display backgrounds
    Label Label2{form_, "Label2", "0"}, Label8{form_, "Label8", "0"};           // positions of A and B
    Label lblAzimut{form_, "lblAzimut", "0"}, lblElev{form_, "lblElev", "0"};
    Label lblUnitA{form_, "lblUnitA"}, lblUnitB{form_, "lblUnitB"};
    Label lblUsoA{form_, "lblUsoA"}, lblUsoB{form_, "lblUsoB"}; // what moves the engine: a label, "Manual"

    // What an engine does now, beside its position.
    Label lblTargetA{form_, "lblTargetA"}, lblTargetB{form_, "lblTargetB"}; // the direction, and the target
    Label lblToGoA{form_, "lblToGoA"}, lblToGoB{form_, "lblToGoB"};         // seconds, or "end of range"
    Bar barA{form_, "barA"}, barB{form_, "barB"};                           // of the way to the target

    Button cmdAv{form_, "cmdAv", "Run >"}, cmdInd{form_, "cmdInd", "< Run"};
    Button cmdAvB{form_, "cmdAvB", "Run >"}, cmdIndB{form_, "cmdIndB", "< Run"};
    Button cmdAvMan{form_, "cmdAvMan", ">>"}, cmdIndMan{form_, "cmdIndMan", "<<"};
    Button cmdBAvMan{form_, "cmdBAvMan", ">>"}, cmdBIndMan{form_, "cmdBIndMan", "<<"};
    Button cmdAlta{form_, "cmdAlta", "Fast"}, cmdBassa{form_, "cmdBassa", "Slow"};
    Button cmdAltaB{form_, "cmdAltaB", "Fast"}, cmdBassaB{form_, "cmdBassaB", "Slow"};
    Button cmdAlt{form_, "cmdAlt", "Stop"}, cmdAltB{form_, "cmdAltB", "Stop"};
    // What a press of a jog button or key does: the engine runs while it is held, or moves by an increment.
    ComboBox cmbJogA{form_, "cmbJogA", {"hold", "0.1", "1", "10", "one step"}};
    ComboBox cmbJogB{form_, "cmbJogB", {"hold", "0.1", "1", "10", "one step"}};
    Label otherSpeedA{form_, "otherSpeedA"}, otherSpeedB{form_, "otherSpeedB"}; // if the directions differ
    Button cmdResetA{form_, "cmdResetA", "Reset 1"}, cmdResetB{form_, "cmdResetB", "Reset 2"};
    CheckBox chkHalfStep{form_, "chkHalfStep", "Full Step"}, chkHalfStepB{form_, "chkHalfStepB", "Full Step"};

    // Parameters: a double-click on the label opens the entry and confirms it.
    Label lblMemAltaA{form_, "lblMemAltaA", "fast"}, lblMemAltaB{form_, "lblMemAltaB", "fast"};
    Label lblBassaA{form_, "lblBassaA", "slow"}, lblBassaB{form_, "lblBassaB", "slow"};
    Label lblMemSteps{form_, "lblMemSteps", "steps/r"}, lblMemStepsB{form_, "lblMemStepsB", "steps/r"};
    Label lblMMGiro{form_, "lblMMGiro", "units/r"}, lblMMGiroB{form_, "lblMMGiroB", "units/r"};
    TextBox txtAltaVelA{form_, "txtAltaVelA", "0"}, txtAltaVelB{form_, "txtAltaVelB", "0"};
    TextBox txtBassaVelA{form_, "txtBassaVelA", "0"}, txtBassaVelB{form_, "txtBassaVelB", "0"};
    TextBox txtSteps{form_, "txtSteps", "0"}, txtStepsB{form_, "txtStepsB", "0"};
    TextBox txtMMGiro{form_, "txtMMGiro", "0"}, txtMMGiroB{form_, "txtMMGiroB", "0"};

    Label lblStepA{form_, "lblStepA"}, lblStepB{form_, "lblStepB"}; // what follows from the parameters
    Notice entryNoticeA, entryNoticeB;                              // why an entry was refused or changed

    Shape shpCoils{form_, "shpCoils"}; // red while a coil is energised
    Label lblOffIn{form_, "lblOffIn"}; // the time until the outputs go off
    Button cmdOff{form_, "cmdOff", "Out Off"};
    CheckBox chkUsbOn{form_, "chkUsbOn", "USB Off"};
    Label lblUsb{form_, "lblUsb", "USB Card 0 disconnected"};
    Label lblRuns{form_, "lblRuns"};       // the time of the ramp
    Label rateNotice{form_, "rateNotice"}; // measured step rates, if the outputs slow the engines
};

} // namespace form
