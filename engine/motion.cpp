#include "engine/motion.h"

#include "engine/position.h"
#include "runtime/number.h"

namespace engine {

namespace {

void paintSpeedButtons(const Side& side, bool fast) {
    side.cmdFast.BackColor = fast ? form::kRed : form::kButtonFace;
    side.cmdSlow.BackColor = fast ? form::kButtonFace : form::kRed;
}

/// Sets the period of the current direction's timer; the other keeps the one it had.
void setPeriod(const Side& side, form::Int16 milliseconds) {
    if (side.intDir == form::kForward) side.forward.Interval = milliseconds.value();
    if (side.intDir == form::kBackward) side.backward.Interval = milliseconds.value();
}

/// A reversal picks the phases up beside the last ones written. They may lie outside the tables here.
void stepBackPhases(const Side& side, int direction) {
    const form::Int16 oneOn = direction == form::kForward ? 1 : -1;
    side.intFase = side.intUltFase + oneOn;
    side.intFaseHalf = side.intUltFaseHalf + oneOn;
}

} // namespace

Motion::Motion(form::Form1& form, form::Boxes& boxes) : form_(form), boxes_(boxes), sides_(form) {
    form.cmdAv.Click.attach([this] { cmdAv_Click(); });
    form.cmdInd.Click.attach([this] { cmdInd_Click(); });
    form.cmdAvB.Click.attach([this] { cmdAvB_Click(); });
    form.cmdIndB.Click.attach([this] { cmdIndB_Click(); });
    form.cmdAlta.Click.attach([this] { cmdAlta_Click(); });
    form.cmdBassa.Click.attach([this] { cmdBassa_Click(); });
    form.cmdAltaB.Click.attach([this] { cmdAltaB_Click(); });
    form.cmdBassaB.Click.attach([this] { cmdBassaB_Click(); });
    form.cmdAlt.Click.attach([this] { cmdAlt_Click(); });
    form.cmdAltB.Click.attach([this] { cmdAltB_Click(); });
    for (const Side* side : {&sides_.a, &sides_.b}) {
        side->cmdJogForward.MouseDown.attach([this, side] { jogDown(*side, form::kForward); });
        side->cmdJogBackward.MouseDown.attach([this, side] { jogDown(*side, form::kBackward); });
        side->cmdJogForward.MouseUp.attach([this, side] { jogUp(*side); });
        side->cmdJogBackward.MouseUp.attach([this, side] { jogUp(*side); });
        side->cmdReset.Click.attach([this, side] { reset(*side); });
    }
}

void Motion::run(const Side& side, int direction) {
    form::Button& button = direction == form::kForward ? side.cmdRunForward : side.cmdRunBackward;
    form::Timer& timer = side.timer(direction);
    const int opposite = direction == form::kForward ? form::kBackward : form::kForward;

    button.Enabled = true;
    // A timer that has never been given a period takes the slow one, or the engine would not step at all.
    if (timer.Interval <= 0) timer.Interval = side.intTickBassa.value();
    paintSpeedButtons(side, timer.Interval != side.intTickBassa.value());
    if (side.intDir == opposite) stepBackPhases(side, direction);
    side.intDir = direction;
    side.timer(opposite).Enabled = false;
    timer.Enabled = true;
    updateOff();
}

void Motion::jogDown(const Side& side, int direction) {
    if (isRotor() && form_.chkRotOnOff.ticked()) return;
    if (form_.chkAutoMemOnOff.ticked() && !isRotor()) {
        form_.chkAutoMemOnOff.Value = 0;
        form_.bolAutoMemByJog = true;
    }
    jogHeld(side) = true;
    // A jog takes the engine out of a recall: the old target must not stop it.
    side.bolMem = false;
    (direction == form::kForward ? side.cmdRunForward : side.cmdRunBackward).Click.raise();
    side.bolManual = true;
    side.lblUso.Caption = "Manual";
    if (!form_.chkFastMemory.ticked() && subResetPressedMem) subResetPressedMem();
}

void Motion::jogUp(const Side& side) {
    jogHeld(side) = false;
    if (isRotor()) {
        // The engine runs on; the rotor function decides when it stops.
        side.bolVelAlta = false;
        side.bolManual = false;
    } else {
        side.cmdStop.Click.raise();
    }
}

void Motion::releaseJogs() {
    for (const Side* side : {&sides_.a, &sides_.b}) {
        if (jogHeld(*side)) jogUp(*side);
    }
}

void Motion::selectFast(const Side& side) {
    side.bolVelAlta = true;
    paintSpeedButtons(side, true);
    setPeriod(side, side.intTickAlta);
}

void Motion::selectSlow(const Side& side) {
    side.bolVelAlta = false;
    paintSpeedButtons(side, false);
    setPeriod(side, side.intTickBassa);
}

void Motion::stop(const Side& side) {
    side.forward.Enabled = false;
    side.backward.Enabled = false;
    side.bolMem = false;
    side.cmdRunForward.Enabled = true;
    side.cmdRunBackward.Enabled = true;
    updateOff();
    if (!isRotor()) return;
    try {
        side.intVelRot = runtime::parseInt16(side.txtSlow.Text.get());
    } catch (const runtime::RunTimeError&) {
        // An entry is half typed: a stop never fails over it, and the last speed stays.
    }
}

void Motion::reset(const Side& side) {
    if (side.running()) return;
    const std::string question =
        "Declare the present position of " + side.lblEngine.Caption.get() + " to be 0? No engine moves.";
    if (!boxes_.confirm(question, side.cmdReset.Caption)) return;
    if (side.running()) return;
    (isRotor() ? side.sngPosRotor : side.sngPos) = 0;
    showPosition(form_, side);
}

void Motion::updateOff() {
    form_.cmdOff.Enabled = !sides_.anyRunning();
}

} // namespace engine
