#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace engine {

/// The time between two steps.
using Period = std::chrono::nanoseconds;

/// An engine's ramp from the slow to the fast speed and back, with constant acceleration. The level is the
/// number of steps that the engine needs to slow down to the slow speed. Level 0 is slow, `levels()` is fast.
class RampCurve {
  public:
    /// No ramp: the speeds change at once.
    RampCurve() = default;
    /// The periods are whole milliseconds, like those of the step timers. `time` is the time from slow to
    /// fast. If `time` is 0, or slow is not slower than fast, there is no ramp.
    RampCurve(int slowMilliseconds, int fastMilliseconds, std::chrono::milliseconds time);

    bool flat() const { return levels_ == 0; }
    std::int64_t levels() const { return levels_; }
    /// The interval of a step from level `from` to level `to`; the levels are equal or neighbours. Never
    /// shorter than the fast period.
    Period interval(std::int64_t from, std::int64_t to) const;
    /// The highest level whose speed is not above that of `period`.
    std::int64_t levelOf(Period period) const;
    /// The time of a move of `steps` that begins at `level` and ends at slow, running as fast as the ramp
    /// allows. If `steps` are too few to slow down, the time of the steps that slowing down needs.
    Period timeFor(std::int64_t steps, std::int64_t level) const;

    bool operator==(const RampCurve&) const = default;

  private:
    /// Seconds for the first `steps` of the ramp, starting at slow.
    double secondsTo(double steps) const;
    double speedAt(double level) const; // steps per second

    double slow_ = 0, fast_ = 0; // steps per second
    double acceleration_ = 0;    // steps per second, per second
    double length_ = 0;          // steps from slow to fast, not always a whole number
    std::int64_t levels_ = 0;
};

/// The time of a move of `steps` that begins at `level` and ends at slow. Without a ramp each step takes
/// `even`.
Period moveTime(const RampCurve& ramp, std::int64_t steps, std::int64_t level, Period even);

/// The speed that an engine heads for; kStop is slow, before a stop.
enum class Pace { kSlow, kFast, kStop };

/// The level after the next step. `toGo` is the number of steps to the target, including the next step; empty
/// without a target. If `toGo` is less than `level`, the engine will pass its target.
std::int64_t nextLevel(const RampCurve& curve, std::int64_t level, Pace pace,
                       std::optional<std::int64_t> toGo);

} // namespace engine
