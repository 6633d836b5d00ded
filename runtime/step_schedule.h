#pragma once

#include <chrono>

namespace runtime {

/// Computes when the ticks of a periodic timer are due. The caller supplies the time, reports when a tick
/// really began and ended, and sets its timer to next().
///
/// The schedule is absolute, so the mean rate is exact. After a late tick the next tick comes no sooner than
/// nine tenths of the interval later, so a motor never gets a burst of steps; the following ticks make up the
/// delay. After a stall of more than ten intervals, or when the delay reaches a hundred intervals, the
/// schedule restarts from that moment.
///
/// A delayed tick may have moved the motor at the very end of the tick. So the nine tenths count from the end
/// of the tick, less the usual duration of a tick; otherwise a slow device would slow the rate twice.
class StepSchedule {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    /// The first tick falls due one interval from `now`. `interval` is above 0.
    void start(Time now, Time interval);
    /// Changes the interval (above 0) for the next tick and all later ticks: the next tick is due one
    /// `interval` after the last tick was due. A delay is still made up. If the new time is already past,
    /// because the old interval was much longer, the tick is due at once, and the schedule goes on from that
    /// moment.
    void setInterval(Time now, Time interval);
    /// A tick began at `now`.
    void ticked(Time now);
    /// The last tick has ended; next() may become later.
    void finished(Time now);

    /// The time to which the caller must set its timer.
    Time next() const { return next_; }

  private:
    Time shortest() const { return interval_ * 9 / 10; }

    // Intervals.
    static constexpr int kLongestStall = 10;
    static constexpr int kLongestBacklog = 100;

    Time interval_{};
    Time ideal_{}; // the next tick's time if no tick had ever been late
    Time next_{};
    Time began_{}; // the last tick, or the start
    Time usual_{}; // the usual duration of a tick: falls at once, rises slowly
};

} // namespace runtime
