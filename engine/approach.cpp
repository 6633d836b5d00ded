#include "engine/approach.h"

#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace engine {

namespace {

constexpr double kMostSteps = 1e6; // a million steps on, nothing depends on their number any more

/// The place of a dip. A move compares two decimals of the position, so the dip lies below what they show.
float belowShown(const Side& side, double dip) {
    constexpr float kHundredth = 0.01F;
    const float shown = runtime::parseSingle(runtime::formatStored(side.sngPos));
    return std::max(0.0F, std::min(runtime::toSingle(dip), shown - kHundredth));
}

} // namespace

Approach::Approach(form::Form1& form, Motion& motion) : form_(form), motion_(motion), sides_(form) {
    motion_.onStep = [this](const Side& side, int direction) {
        of(side).backlash.stepped(side.ascends(direction) ? 1 : -1);
    };
    motion_.onStop = [this](const Side& side) { of(side).target.reset(); };
    motion_.onArrival = [this](const Side& side) -> std::function<void()> {
        const auto target = of(side).target;
        if (!target) return nullptr;
        return [this, &side, target = *target] { leg(side, target); };
    };
    motion_.onPassed = [this](const Side& side) { moveTo(side, of(side).target.value_or(side.sngTarget)); };
}

void Approach::setBacklash(int play1, int play2) {
    // An unchanged play keeps what has been taken up.
    if (engines_[0].backlash.play() != play1) engines_[0].backlash.setPlay(play1);
    if (engines_[1].backlash.play() != play2) engines_[1].backlash.setPlay(play2);
}

std::string Approach::faultOfPlace() const {
    for (const Side* side : {&sides_.a, &sides_.b}) {
        const Backlash& backlash = of(*side).backlash;
        if (backlash.takenUp()) continue;
        const std::string engine = side->lblEngine.Caption;
        if (backlash.wentDown()) return engine + " was last moved down: move it up to its place";
        return "the backlash of " + engine + " may not be taken up: come to its place from further below";
    }
    return {};
}

double Approach::stepsTo(const Side& side, float target) {
    const double distance = stepDistance(side);
    if (distance == 0) return 0;
    return std::clamp((double{target} - side.sngPos) / distance, -kMostSteps, kMostSteps);
}

bool Approach::moveTo(const Side& side, float target) {
    of(side).target.reset();
    const auto steps = static_cast<int>(std::lround(stepsTo(side, target)));
    const int toZero = static_cast<int>(std::ceil(stepsTo(side, 0)));
    const Backlash& backlash = of(side).backlash;
    const int dip = backlash.dip(steps, toZero);
    if (dip == steps || dip == 0) { // at 0 there is no room for a dip
        if (!leg(side, target)) return false;
    } else {
        if (!leg(side, belowShown(side, side.sngPos + dip * stepDistance(side)))) return false;
        of(side).target = target;
    }
    if ((steps < 0 || dip < steps) && steps - dip < backlash.play()) {
        form_.notice.tell(side.lblEngine.Caption.get() + " cannot go below 0 to take its backlash up");
    }
    return true;
}

std::optional<Approach::Way> Approach::way(const Side& side) const {
    const auto time = motion_.timeToGo(side);
    if (!time) return std::nullopt;
    if (form_.intFunzione == form::kSatelliteRotor)
        return Way{side.sngTargetRotor, std::fabs(double{side.sngTargetRotor} - side.sngPosRotor), *time};
    Way way{side.sngTarget, std::fabs(double{side.sngTarget} - side.sngPos), *time};
    if (const auto& end = of(side).target) {
        const double back = std::fabs(double{*end} - side.sngTarget);
        way.target = *end;
        way.distance += back;
        const double step = stepDistance(side);
        const std::chrono::milliseconds slow(side.intTickBassa.value());
        if (step > 0) way.time += std::lround(back / step) * Period(slow);
    }
    return way;
}

bool Approach::leg(const Side& side, float target) {
    const bool started = motion_.moveTo(side, target);
    const bool near = std::fabs(side.sngPos - target) < static_cast<float>(form_.intMemSlowDist.value());
    if (near) {
        motion_.slow(side);
    } else {
        motion_.fast(side);
    }
    return started;
}

} // namespace engine
