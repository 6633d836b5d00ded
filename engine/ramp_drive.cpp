#include "engine/ramp_drive.h"

#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace engine {

std::chrono::milliseconds rampTime(const form::Form1& form) {
    constexpr std::chrono::milliseconds kUnit{20};
    return form.HScroll1.Value.get() * kUnit;
}

std::string rampText(const form::Form1& form) {
    const auto seconds = std::chrono::duration<float>(rampTime(form)).count();
    return seconds > 0 ? runtime::formatShown(seconds) + " s" : "No ramp";
}

RampCurve rampOf(const form::Form1& form, const Side& side) {
    return {side.intTickBassa.value(), side.intTickAlta.value(), rampTime(form)};
}

void RampDrive::begin() {
    end();
    curve_ = rampOf(form_, side_);
    plan();
}

void RampDrive::end() {
    level_ = from_ = 0;
    setThen(ThenDo::kGoOn);
}

void RampDrive::setThen(ThenDo then, int turnTo) {
    then_ = then;
    turnTo_ = turnTo;
}

void RampDrive::stepped() {
    refreshCurve();
    plan();
}

void RampDrive::speedChanged() {
    // Changing Interval has restarted the clock at the selected speed, so the next step is planned again.
    if (!side_.running()) return;
    level_ = from_;
    plan();
}

/// The user may change speeds or ramp time while the engine runs: the ramp goes on from the present speed.
void RampDrive::refreshCurve() {
    RampCurve now = rampOf(form_, side_);
    if (now == curve_) return;
    level_ = level_ > 0 ? now.levelOf(interval_) : 0;
    if (now.flat()) timer().setPeriod(std::chrono::milliseconds(timer().Interval));
    curve_ = now;
}

void RampDrive::plan() {
    if (curve_.flat()) return;
    const std::int64_t next = nextLevel(curve_, level_, pace(), stepsToGo());
    interval_ = curve_.interval(level_, next);
    from_ = std::exchange(level_, next);
    timer().setPeriod(interval_);
}

Pace RampDrive::pace() const {
    if (then_ != ThenDo::kGoOn) return Pace::kStop;
    // After the user has edited the selected speed, Interval still holds the old period. Take the speed whose
    // period is nearer.
    const bool fast = 2 * timer().Interval < side_.intTickAlta.value() + side_.intTickBassa.value();
    return fast ? Pace::kFast : Pace::kSlow;
}

std::optional<Period> RampDrive::timeToGo() const {
    const auto steps = stepsToGo();
    if (!steps || !side_.running()) return std::nullopt;
    const std::chrono::milliseconds even(timer().Interval.get());
    // At slow the ramp is not used.
    return moveTime(pace() == Pace::kSlow ? RampCurve() : curve_, std::max<std::int64_t>(0, *steps), level_,
                    even);
}

std::optional<std::int64_t> RampDrive::stepsToGo() const {
    const bool rotor = form_.intFunzione == form::kSatelliteRotor;
    if (!(rotor ? side_.bolTargetRotor : side_.bolMem)) return std::nullopt;
    const double way =
        rotor ? double{side_.sngTargetRotor} - side_.sngPosRotor : double{side_.sngTarget} - side_.sngPos;
    const double step = side_.sngMMGiro / (side_.bytMolt.value() * side_.intSteps.value());
    const double steps = (side_.intDir == form::kForward ? way : -way) / step;
    // Positions are singles: their rounding must not add a step.
    constexpr double kRounding = 1e-3;
    constexpr double kFar = 1e9;
    return static_cast<std::int64_t>(std::ceil(std::clamp(steps, -kFar, kFar) - kRounding));
}

} // namespace engine
