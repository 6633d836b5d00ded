#include "engine/motion.h"

#include "engine/increment.h"
#include "engine/position.h"
#include "runtime/number.h"
#include "runtime/text.h"

namespace engine {

namespace {

void paintSpeedButtons(const Side& side, bool fast) {
    side.cmdFast.BackColor = fast ? form::kRed : form::kButtonFace;
    side.cmdSlow.BackColor = fast ? form::kButtonFace : form::kRed;
}

int opposite(int direction) {
    return direction == form::kForward ? form::kBackward : form::kForward;
}

/// In milliseconds; 0 or negative if the speed has no period.
int period(const Side& side, bool fast) {
    return (fast ? side.intTickAlta : side.intTickBassa).value();
}

/// Returns the speed to use: the chosen speed, or the other speed if only the other one has a period.
bool usableSpeed(const Side& side, bool fast) {
    return period(side, fast) > 0 || period(side, !fast) <= 0 ? fast : !fast;
}

/// After a reversal the next phase is the neighbour of the last phase written. The new index may lie outside
/// the tables.
void stepBackPhases(const Side& side, int direction) {
    const form::Int16 oneOn = direction == form::kForward ? 1 : -1;
    side.intFase = side.intUltFase + oneOn;
    side.intFaseHalf = side.intUltFaseHalf + oneOn;
}

/// Whether the antenna follows, so that the user's own motion is refused; the notice says why.
bool refused(form::Form1& form) {
    if (form.intFunzione != form::kSatelliteRotor || !form.chkRotOnOff.ticked()) return false;
    form.notice.tell("The antenna follows: press Stop, or untick " + form.chkRotOnOff.Caption.get() +
                     ", before you turn it");
    return true;
}

} // namespace

Motion::Motion(form::Form1& form, form::Boxes& boxes)
    : form_(form), boxes_(boxes), sides_(form), ownA_{{form, sides_.a}}, ownB_{{form, sides_.b}} {
    form.cmdAv.Click.attach([this] {
        if (!refused(form_)) cmdAv_Click();
    });
    form.cmdInd.Click.attach([this] {
        if (!refused(form_)) cmdInd_Click();
    });
    form.cmdAvB.Click.attach([this] {
        if (!refused(form_)) cmdAvB_Click();
    });
    form.cmdIndB.Click.attach([this] {
        if (!refused(form_)) cmdIndB_Click();
    });
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

bool Motion::run(const Side& side, int direction) {
    own(side).goal.reset();
    side.bolTargetRotor = false;
    return start(side, direction);
}

bool Motion::jog(const Side& side, int direction) {
    const bool increments = side.cmbJog.ListIndex != 0;
    return increments ? moveBy(side, direction, increment(side)) : run(side, direction);
}

bool Motion::moveBy(const Side& side, int direction, double distance) {
    const double step = stepDistance(side);
    if (step > 2 * distance) {
        form_.notice.tell(side.lblEngine.Caption.get() + " cannot move by less than a step, which is " +
                          runtime::shortestText(runtime::toSingle(step)));
        return false;
    }
    const bool goesOn = own(side).goal && side.running() && side.intDir == direction;
    const double from = goesOn ? *own(side).goal : isRotor() ? side.sngPosRotor : side.sngPos;
    if (!start(side, direction)) return false;
    const IncrementalMove move = incrementalMove(from, distance, step, side.ascends(direction));
    own(side).goal = move.goal;
    (isRotor() ? side.sngTargetRotor : side.sngTarget) = move.target;
    (isRotor() ? side.bolTargetRotor : side.bolMem) = true;
    return true;
}

bool Motion::moveTo(const Side& side, float target) {
    own(side).goal.reset();
    (isRotor() ? side.sngTargetRotor : side.sngTarget) = target;
    (isRotor() ? side.bolTargetRotor : side.bolMem) = true;
    const int direction = directionTo(side, target);
    if (direction == 0) {
        // Only the next step ends a recall, so a running engine goes on to that step.
        if (isRotor() || !side.running()) stop(side);
        return true;
    }
    // A recall does not count as a reversal, so the phase indexes stay. The rotor's moves do count: without
    // the step back its position would drift over the many reversals of a pass.
    return start(side, direction, !isRotor());
}

bool Motion::canMoveTo(const Side& side, float target) {
    return directionTo(side, target) == 0 || canStart(side);
}

int Motion::directionTo(const Side& side, float target) const {
    // A stored position has two decimals, so a recall compares two decimals.
    const float here =
        isRotor() ? side.sngPosRotor : runtime::parseSingle(runtime::formatStored(side.sngPos));
    if (here == target) return 0;
    return side.ascends(form::kForward) == (here < target) ? form::kForward : form::kBackward;
}

std::string Motion::whyNotStart(const Side& side) const {
    if (std::string why = notReady ? notReady() : std::string(); !why.empty()) return why;
    if (period(side, false) <= 0 && period(side, true) <= 0) {
        return "enter its " + side.slow.label.Caption.get() + " or " + side.fast.label.Caption.get() +
               " speed";
    }
    if (side.intSteps == 0) return "enter its " + side.steps.label.Caption.get();
    if (side.sngMMGiro == 0) return "enter its " + side.units.label.Caption.get();
    return {};
}

bool Motion::canStart(const Side& side) {
    const std::string why = whyNotStart(side);
    if (!why.empty()) form_.notice.tell(side.lblEngine.Caption.get() + " does not start: " + why);
    return why.empty();
}

bool Motion::start(const Side& side, int direction, bool recall) {
    if (!canStart(side)) {
        stop(side);
        return false;
    }
    own(side).released = false;
    RampDrive& ramp = own(side).ramp;
    const bool runs = side.running();
    if (runs && side.intDir == opposite(direction) && ramp.aboveSlow()) {
        // The ramp first slows the engine down; then `stepped` reverses it.
        ramp.setThen(ThenDo::kTurn, direction);
        return true;
    }
    if (recall) side.intDir = direction;
    form::Button& button = direction == form::kForward ? side.cmdRunForward : side.cmdRunBackward;
    form::Timer& timer = side.timer(direction);
    button.Enabled = true;
    // A timer without a period gets the slow one; otherwise the engine would not step at all.
    if (timer.Interval <= 0) timer.Interval = period(side, usableSpeed(side, false));
    paintSpeedButtons(side, timer.Interval != side.intTickBassa.value());
    if (side.intDir == opposite(direction)) stepBackPhases(side, direction);
    side.intDir = direction;
    const bool turns = side.timer(opposite(direction)).Enabled;
    side.timer(opposite(direction)).Enabled = false;
    timer.Enabled = true;
    if (runs && !turns) {
        ramp.setThen(ThenDo::kGoOn);
    } else {
        ramp.begin();
    }
    showOtherSpeed(side);
    updateOff();
    return true;
}

void Motion::stepped(const Side& side) {
    RampDrive& ramp = own(side).ramp;
    if (ramp.then() == ThenDo::kGoOn || ramp.aboveSlow()) {
        ramp.stepped();
        return;
    }
    switch (const int direction = ramp.turnTo(); ramp.then()) {
    case ThenDo::kTurn:
        ramp.end();
        start(side, direction, side.bolMem && !movesByIncrement(side));
        break;
    case ThenDo::kReturn: {
        ramp.end();
        const auto goal = own(side).goal;
        const bool fast = side.bolVelAlta;
        if (!goal && onPassed) {
            onPassed(side);
        } else {
            moveTo(side, side.sngTarget);
        }
        own(side).goal = goal;
        selectSpeed(side, fast);
        break;
    }
    default:
        stop(side);
    }
}

void Motion::arrive(const Side& side) {
    RampDrive& ramp = own(side).ramp;
    // An engine that is about to reverse has already passed its target.
    const bool comesBack = ramp.then() == ThenDo::kTurn || ramp.then() == ThenDo::kReturn;
    if (comesBack || ramp.aboveSlow()) {
        if (!comesBack) ramp.setThen(isRotor() ? ThenDo::kStop : ThenDo::kReturn);
        stepped(side);
        return;
    }
    const auto goOn = onArrival && !movesByIncrement(side) ? onArrival(side) : nullptr;
    stop(side);
    if (goOn) goOn();
}

void Motion::release(const Side& side) {
    if (side.running() && own(side).ramp.aboveSlow()) {
        own(side).ramp.setThen(ThenDo::kStop);
    } else {
        stop(side);
    }
}

void Motion::jogDown(const Side& side, int direction) {
    if (refused(form_)) return;
    if (form_.chkAutoMemOnOff.ticked() && !isRotor()) {
        form_.chkAutoMemOnOff.Value = 0;
        form_.bolAutoMemByJog = true;
    }
    // A jog ends a recall: the old target must not stop the engine.
    side.bolMem = false;
    if (!jog(side, direction)) return;
    own(side).jogHeld = side.bolManual = !movesByIncrement(side);
    side.lblUso.Caption = "Manual";
    if (!form_.chkFastMemory.ticked() && subResetPressedMem) subResetPressedMem();
}

void Motion::jogUp(const Side& side) {
    if (!std::exchange(own(side).jogHeld, false) && movesByIncrement(side)) return;
    if (isRotor()) {
        // The engine runs on; Rotor decides when it stops.
        side.bolVelAlta = false;
        side.bolManual = false;
        own(side).released = true;
    } else {
        release(side);
    }
}

void Motion::releaseJogs() {
    for (const Side* side : {&sides_.a, &sides_.b}) {
        if (own(*side).jogHeld) jogUp(*side);
    }
}

void Motion::selectSpeed(const Side& side, bool fast) {
    const bool chosen = usableSpeed(side, fast);
    side.bolVelAlta = chosen;
    paintSpeedButtons(side, chosen);
    // Sets the timer of the current direction, or of the new direction if the engine is reversing. The other
    // timer keeps its period.
    RampDrive& ramp = own(side).ramp;
    const int direction = ramp.then() == ThenDo::kTurn ? ramp.turnTo() : side.intDir.value();
    const bool hasDirection = direction == form::kForward || direction == form::kBackward;
    if (hasDirection && period(side, chosen) > 0) {
        side.timer(direction).Interval = period(side, chosen);
        ramp.speedChanged();
    }
    showOtherSpeed(side);
    if (chosen != fast && side.running()) sayMissing(side, fast);
}

void Motion::userSpeed(const Side& side, bool fast) {
    selectSpeed(side, fast);
    if (side.bolVelAlta != fast && !side.running()) sayMissing(side, fast);
}

void Motion::sayMissing(const Side& side, bool fast) {
    const Parameter& missing = fast ? side.fast : side.slow;
    form_.notice.tell(side.lblEngine.Caption.get() + " has no " + missing.label.Caption.get() +
                      " speed: it runs at the other one");
}

void Motion::showOtherSpeed(const Side& side) {
    const int direction = side.intDir.value();
    const int other = opposite(direction);
    const int interval = side.timer(other).Interval;
    side.otherSpeed.Caption = "";
    if ((direction != form::kForward && direction != form::kBackward) || interval <= 0 ||
        interval == side.timer(direction).Interval)
        return;
    // A speed that was edited since is neither.
    const std::string speed = interval == side.intTickBassa.value() ? "slow"
                              : interval == side.intTickAlta.value()
                                  ? "fast"
                                  : std::to_string(speedOf(interval)) + "/s";
    const form::Button& jog = other == form::kForward ? side.cmdJogForward : side.cmdJogBackward;
    side.otherSpeed.Caption = jog.Caption.get() + " " + speed;
}

void Motion::userStop(const Side& side) {
    stop(side);
    if (onUserStop) onUserStop();
}

void Motion::stopBoth() {
    stop(sides_.a);
    stop(sides_.b);
}

void Motion::stop(const Side& side) {
    side.forward.Enabled = false;
    side.backward.Enabled = false;
    side.bolMem = false;
    side.bolTargetRotor = false;
    own(side).ramp.end();
    own(side).released = false;
    own(side).goal.reset();
    side.cmdRunForward.Enabled = true;
    side.cmdRunBackward.Enabled = true;
    updateOff();
    if (onStop) onStop(side);
    if (!isRotor()) return;
    try {
        side.intVelRot = runtime::parseInt16(side.slow.box.Text.get());
    } catch (const runtime::RunTimeError&) {
        // The user is typing a speed. The stop must not fail; the last speed is kept.
    }
}

void Motion::endOfRange(const Side& side) {
    stop(side);
    if (onEndOfRange) onEndOfRange(side);
}

void Motion::reset(const Side& side) {
    if (side.running()) return;
    const std::string question =
        "Declare the present position of " + side.lblEngine.Caption.get() + " to be 0? No engine moves.";
    if (!boxes_.confirm(question, side.cmdReset.Caption)) return;
    if (side.running()) return;
    const float before = std::exchange(isRotor() ? side.sngPosRotor : side.sngPos, 0.0F);
    showPosition(form_, side);
    if (onReset) onReset(side, before);
}

void Motion::updateOff() {
    form_.cmdOff.Enabled = !sides_.anyRunning();
}

} // namespace engine
