#include "ui/engine_controls.h"

namespace ui {

EngineControls engineA(form::Form1& f) {
    return {
        .mirrored = false,
        .name = f.lblEngineA,
        .use = f.lblUsoA,
        .lamps = {&f.out1, &f.out2, &f.out3, &f.out4},
        .display = f.shpDisplayA,
        .position = f.Label2,
        .angle = f.lblAzimut,
        .received = f.lblAzRx,
        .unit = f.lblUnitA,
        .target = f.lblTargetA,
        .toGo = f.lblToGoA,
        .bar = f.barA,
        .runBackward = f.cmdInd,
        .jogBackward = f.cmdIndMan,
        .stop = f.cmdAlt,
        .jogForward = f.cmdAvMan,
        .runForward = f.cmdAv,
        .slow = f.cmdBassa,
        .fast = f.cmdAlta,
        .stepMode = f.chkHalfStep,
        .jogChoice = f.cmbJogA,
        .otherSpeed = f.otherSpeedA,
        .reset = f.cmdResetA,
        .fastSpeed = {f.lblMemAltaA, f.txtAltaVelA},
        .slowSpeed = {f.lblBassaA, f.txtBassaVelA},
        .steps = {f.lblMemSteps, f.txtSteps},
        .units = {f.lblMMGiro, f.txtMMGiro},
        .step = f.lblStepA,
        .entryNotice = f.entryNoticeA,
        .slowKey = "F4",
        .fastKey = "F5",
        .stopKey = "F6",
    };
}

EngineControls engineB(form::Form1& f) {
    return {
        .mirrored = true,
        .name = f.lblEngineB,
        .use = f.lblUsoB,
        .lamps = {&f.out1B, &f.out2B, &f.out3B, &f.out4B},
        .display = f.shpDisplayB,
        .position = f.Label8,
        .angle = f.lblElev,
        .received = f.lblElRx,
        .unit = f.lblUnitB,
        .target = f.lblTargetB,
        .toGo = f.lblToGoB,
        .bar = f.barB,
        .runBackward = f.cmdIndB,
        .jogBackward = f.cmdBIndMan,
        .stop = f.cmdAltB,
        .jogForward = f.cmdBAvMan,
        .runForward = f.cmdAvB,
        .slow = f.cmdBassaB,
        .fast = f.cmdAltaB,
        .stepMode = f.chkHalfStepB,
        .jogChoice = f.cmbJogB,
        .otherSpeed = f.otherSpeedB,
        .reset = f.cmdResetB,
        .fastSpeed = {f.lblMemAltaB, f.txtAltaVelB},
        .slowSpeed = {f.lblBassaB, f.txtBassaVelB},
        .steps = {f.lblMemStepsB, f.txtStepsB},
        .units = {f.lblMMGiroB, f.txtMMGiroB},
        .step = f.lblStepB,
        .entryNotice = f.entryNoticeB,
        .slowKey = "F8",
        .fastKey = "F9",
        .stopKey = "F7",
    };
}

} // namespace ui
