#include "engine/stepper.h"

#include "engine/coil_sequence.h"
#include "engine/position.h"
#include "runtime/number.h"

namespace engine {

namespace {

/// The next index in the direction of travel. The index wraps only when it leaves its range.
form::Int16 nextIndex(form::Int16 index, int direction, int phases) {
    if (direction == form::kForward) {
        index += 1;
        return index > phases ? form::Int16(1) : index;
    }
    index += -1;
    return index < 1 ? form::Int16(phases) : index;
}

} // namespace

Stepper::Stepper(form::Form1& form, form::Boxes& boxes, OutputPorts& outputs, Motion& motion)
    : form_(form), boxes_(boxes), outputs_(outputs), motion_(motion), sides_(form) {
    form_.Timer1.Tick.attach([this] { Timer1_Timer(); });
    form_.Timer2.Tick.attach([this] { Timer2_Timer(); });
    form_.Timer3.Tick.attach([this] { Timer3_Timer(); });
    form_.Timer4.Tick.attach([this] { Timer4_Timer(); });
    form_.tmrOutputs.Tick.attach([this] { tmrOutputs_Timer(); });
    form_.tmrOutputs.Enabled = true;
    form_.chkHalfStep.Click.attach([this] { chkHalfStep_Click(); });
    form_.chkHalfStepB.Click.attach([this] { chkHalfStepB_Click(); });
}

void Stepper::tick(const Side& side, int direction) {
    // Each pattern must reach the coils; otherwise the position would no longer match the rotor.
    const bool ready = outputs_.ready(side);
    rate_.count(side.motor, ready);
    if (!ready) return;
    side.timer(direction == form::kForward ? form::kBackward : form::kForward).Enabled = false;
    if (atLimit(side, direction)) {
        motion_.endOfRange(side);
        return;
    }
    // The index and the step count advance whether or not the coils were written.
    const auto step = [&](const auto& sequence, form::Int16& index, form::Int16& lastWritten) {
        if (side.intDir == direction && writePhase(side, direction, sequence, index)) lastWritten = index;
        form_.lngContaStep += 1;
        index = nextIndex(index, direction, static_cast<int>(sequence.size()));
    };
    if (side.bolHalfStep) {
        step(kHalfStep, side.intFaseHalf, side.intUltFaseHalf);
    } else {
        step(kFullStep, side.intFase, side.intUltFase);
    }
}

void Stepper::tmrOutputs_Timer() {
    form_.rateNotice.Caption = rate_.takeText(sides_, outputs_.takeSlowDevice());
    if (lookAtPort) lookAtPort();
    outputs_.checkUsb();
}

bool Stepper::atLimit(const Side& side, int direction) const {
    if (isRotor() && isBlocked && isBlocked(side, side.ascends(direction))) return true;
    // Engine B's limit holds in Satellite Rotor too, although it is compared with sngPosB, which does not
    // change there.
    if (side.rotorHasNoLimit && isRotor()) return false;
    const form::Int16 rounded = runtime::roundToInt16(side.sngPos);
    return side.ascends(direction) ? rounded >= kEndOfRun : rounded <= -kEndOfRun;
}

template <class Sequence>
bool Stepper::writePhase(const Side& side, int direction, const Sequence& sequence, form::Int16 index) {
    if (index < 1 || index > static_cast<int>(sequence.size())) return false;
    const auto number = static_cast<std::size_t>(index.value() - 1);
    const Phase& phase = sequence[number];
    const std::size_t lit = number % kLamps;
    for (std::size_t lamp = 0; lamp < kLamps; ++lamp) {
        side.lamps[lamp]->FillColor = lamp == lit ? form::kRed : form::kBlack;
    }
    for (const OutputWrite& write : phase.writes) {
        outputs_.subBitPorta(write.state, side.firstOutput - 1 + write.output);
    }
    outputs_.endPattern();
    outputs_.subUsbOnOff(phase.usb * side.usbFactor, side.motor);
    move(side, direction);
    return true;
}

void Stepper::move(const Side& side, int direction) {
    const form::Int16 stepsPerTurn = form::Int16(side.bytMolt.value()) * side.intSteps;
    if (stepsPerTurn == 0) {
        throw runtime::DivisionByZero("the steps per revolution of " + side.lblEngine.Caption.get() +
                                      " are 0");
    }
    const float distance = runtime::divideSingle(side.sngMMGiro, static_cast<float>(stepsPerTurn.value()));
    float& position = isRotor() ? side.sngPosRotor : side.sngPos;
    position = runtime::toSingle(direction == form::kForward ? double{position} + distance
                                                             : double{position} - distance);
    constexpr int kHalfStepsOfFull = 2;
    side.halfSteps +=
        (direction == form::kForward ? kHalfStepsOfFull : -kHalfStepsOfFull) / side.bytMolt.value();
    showPosition(form_, side);
    if (motion_.onStep) motion_.onStep(side, direction);
    if (atEndOfRun(side, direction)) {
        motion_.endOfRange(side);
    } else if (atTarget(side, direction)) {
        motion_.arrive(side);
    } else {
        motion_.stepped(side);
    }
}

bool Stepper::atEndOfRun(const Side& side, int direction) const {
    const bool ascends = side.ascends(direction);
    if (isRotor()) return ascends && side.sngPosRotor >= side.rotorEnd;
    const float position = side.roundsEndOfRun ? runtime::roundToInt16(side.sngPos).value() : side.sngPos;
    return ascends ? position >= kEndOfRun : position <= -kEndOfRun;
}

bool Stepper::atTarget(const Side& side, int direction) const {
    if (!(isRotor() ? side.bolTargetRotor : side.bolMem)) return false;
    const float position = isRotor() ? side.sngPosRotor : side.sngPos;
    const float target = isRotor() ? side.sngTargetRotor : side.sngTarget;
    return side.ascends(direction) ? position >= target : position <= target;
}

void Stepper::applyStepMode(const Side& side) {
    const bool half = side.chkHalfStep.ticked();
    side.chkHalfStep.Caption = half ? "Half Step" : "Full Step";
    side.bolHalfStep = half;
    side.bytMolt = half ? 2 : 1;
}

void Stepper::changeStepMode(const Side& side) {
    applyStepMode(side);
    if (form_.bolAvvisoReset) {
        boxes_.critical("Please be sure to Reset stepper position to have correct measure",
                        "Stepper resetted?");
    }
}

} // namespace engine
