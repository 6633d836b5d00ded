#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace engine {

/// Between two steps.
using Period = std::chrono::nanoseconds;

/// The way of an engine from its slow speed to its fast one and back, at an even acceleration. Along it the
/// engine has a level: the steps it takes to come down to slow. Level 0 is slow, `levels()` is fast.
class RampCurve {
  public:
    /// No ramp: the speeds change at once.
    RampCurve() = default;
    /// The periods in whole milliseconds, as the step timers have them; `time` from slow to fast. There is no
    /// ramp without time, nor where slow is at or above fast.
    RampCurve(int slowMilliseconds, int fastMilliseconds, std::chrono::milliseconds time);

    bool flat() const { return levels_ == 0; }
    std::int64_t levels() const { return levels_; }
    /// The interval of a step that leads from one level to the same or to a neighbour. Never shorter than the
    /// fast period.
    Period interval(std::int64_t from, std::int64_t to) const;
    /// The highest level that is no faster than this period.
    std::int64_t levelOf(Period period) const;
    /// How long `steps` take from `level` to a stop at slow, at the fast speed as far as that is reached.
    /// Where they do not suffice to brake, the time of as many as it takes.
    Period timeFor(std::int64_t steps, std::int64_t level) const;

    bool operator==(const RampCurve&) const = default;

  private:
    /// Seconds from the start to the place `steps` further on, slow being the speed at the start.
    double secondsTo(double steps) const;
    double speedAt(double level) const; // steps per second

    double slow_ = 0, fast_ = 0; // steps per second
    double acceleration_ = 0;    // steps per second, per second
    double length_ = 0;          // steps from slow to fast, which need not be whole
    std::int64_t levels_ = 0;
};

/// What an engine wants of its speed.
enum class Pace { kSlow, kFast, kStop };

/// The level after the next step. `toGo` are the steps to the target, the next one included; nothing where
/// there is no target. Less than `level`: the target is passed by the ramp.
std::int64_t nextLevel(const RampCurve& curve, std::int64_t level, Pace pace,
                       std::optional<std::int64_t> toGo);

} // namespace engine
