#include "engine/ramp.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

constexpr double kMillisecondsPerSecond = 1000;

Period fromSeconds(double seconds) {
    // Rounds up to a nanosecond: an interval must not become shorter than the fast period.
    return Period(static_cast<Period::rep>(std::ceil(seconds * 1e9 - 1e-3)));
}

} // namespace

RampCurve::RampCurve(int slowMilliseconds, int fastMilliseconds, std::chrono::milliseconds time) {
    if (fastMilliseconds <= 0 || slowMilliseconds <= fastMilliseconds || time.count() <= 0) return;
    slow_ = kMillisecondsPerSecond / slowMilliseconds;
    fast_ = kMillisecondsPerSecond / fastMilliseconds;
    const double seconds = static_cast<double>(time.count()) / kMillisecondsPerSecond;
    acceleration_ = (fast_ - slow_) / seconds;
    length_ = (fast_ + slow_) / 2 * seconds;
    // A length that differs from a whole number only by rounding counts as whole.
    levels_ = std::max<std::int64_t>(1, static_cast<std::int64_t>(std::ceil(length_ - 1e-6)));
}

double RampCurve::secondsTo(double steps) const {
    const double onCurve = std::min(steps, length_);
    return (std::sqrt(slow_ * slow_ + 2 * acceleration_ * onCurve) - slow_) / acceleration_ +
           (steps - onCurve) / fast_;
}

double RampCurve::speedAt(double level) const {
    return level >= length_ ? fast_ : std::sqrt(slow_ * slow_ + 2 * acceleration_ * level);
}

Period RampCurve::interval(std::int64_t from, std::int64_t to) const {
    const auto low = static_cast<double>(std::min(from, to));
    return fromSeconds(from == to ? 1 / (to >= levels_ ? fast_ : speedAt(low))
                                  : secondsTo(low + 1) - secondsTo(low));
}

std::int64_t RampCurve::levelOf(Period period) const {
    if (flat() || period.count() <= 0) return 0;
    const double speed = std::min(1e9 / static_cast<double>(period.count()), fast_);
    const double level = (speed * speed - slow_ * slow_) / (2 * acceleration_);
    return std::clamp(static_cast<std::int64_t>(level + 1e-6), std::int64_t{0}, levels_);
}

Period RampCurve::timeFor(std::int64_t steps, std::int64_t level) const {
    const std::int64_t peak = std::clamp((steps + level) / 2, level, std::max(level, levels_));
    const std::int64_t even = std::max<std::int64_t>(0, steps + level - 2 * peak);
    const auto seconds = [this](std::int64_t to) { return secondsTo(static_cast<double>(to)); };
    return fromSeconds(2 * seconds(peak) - seconds(level)) + even * interval(peak, peak);
}

Period moveTime(const RampCurve& ramp, std::int64_t steps, std::int64_t level, Period even) {
    return ramp.flat() ? steps * even : ramp.timeFor(steps, level);
}

std::int64_t nextLevel(const RampCurve& curve, std::int64_t level, Pace pace,
                       std::optional<std::int64_t> toGo) {
    const std::int64_t down = std::max<std::int64_t>(0, level - 1);
    if (pace != Pace::kFast) return down;
    if (toGo && *toGo <= level) return down;
    const bool roomToRise = !toGo || *toGo >= level + 2;
    return roomToRise ? std::min(level + 1, curve.levels()) : level;
}

} // namespace engine
