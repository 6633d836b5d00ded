#include "rotor/follower.h"

#include <algorithm>
#include <cmath>

namespace rotor {

Order orderFor(const AxisState& axis, double aim, const AxisThresholds& thresholds) {
    // Positions are singles: smaller differences count as equal.
    constexpr double kSame = 1e-4; // degrees
    const double error = aim - axis.position;
    const int towards = error > 0 ? 1 : -1;
    const double off = std::fabs(error);
    const Order run{towards, thresholds.fast <= 0 || off > thresholds.fast, aim};
    if (off < kSame) return {};
    if (axis.running == towards) return run;
    double start = std::max(thresholds.restart, axis.step);
    if (axis.last == -towards) start += thresholds.reverse;
    return off < start - kSame ? Order{} : run;
}

void Follower::reset() {
    *this = Follower();
}

void Follower::take(const Direction& target, const Axes& axes, const Settings& settings) {
    // A target that jitters around the line ends its pass once.
    constexpr double kOver = 0.5; // degrees
    below_ = target.elevation < settings.followFrom;
    if (target.elevation < settings.followFrom - kOver) {
        over_ = true;
        path_.endPass();
    } else if (!below_) {
        over_ = false;
    }
    path_.take(target, axes.direction(), settings.machine);
}

Follower::Orders Follower::look(Time time, const Axes& axes, const Settings& settings) {
    turnedRound_ = false;
    if (!path_.any() || below_) return {};
    turnedRound_ = path_.pass(time, axes.direction(), settings.machine);
    const Direction aim = path_.aim(settings.machine.ranges);
    return {orderFor(axes.azimuth, aim.azimuth, settings.azimuth),
            orderFor(axes.elevation, aim.elevation, settings.elevation)};
}

} // namespace rotor
