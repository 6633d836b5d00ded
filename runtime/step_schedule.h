#pragma once

#include <chrono>

namespace runtime {

/// When the ticks of a periodic timer fall due. Pure arithmetic: the caller brings the clock, says when a
/// tick really began and ended, and arms its timer for next().
///
/// The schedule is absolute, so that the mean rate holds. After a late tick the next one comes no sooner than
/// nine tenths of the interval, so that a motor never sees a burst; the backlog is made up over the ticks
/// that follow. After a stall of more than ten intervals, or where a hundred have piled up, the schedule
/// starts anew from there.
///
/// A tick that was held up in its middle may have moved the motor at its very end, so the nine tenths count
/// from there: less what ticks usually take, or a slow device would slow the rate twice.
class StepSchedule {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    /// The first tick falls due one interval from `now`. `interval` is above 0.
    void start(Time now, Time interval);
    /// The tick to come falls due one `interval`, above 0, after the last one's moment, and so do those that
    /// follow. What was to be made up still is. Where that moment is over, because the last interval was much
    /// longer, the tick falls due at once, and the schedule goes on from there.
    void setInterval(Time now, Time interval);
    /// A tick began at `now`.
    void ticked(Time now);
    /// The tick that began last has ended; next() may move away.
    void finished(Time now);

    /// The moment for which the timer is to be armed.
    Time next() const { return next_; }

  private:
    Time shortest() const { return interval_ * 9 / 10; }

    // Intervals.
    static constexpr int kLongestStall = 10;
    static constexpr int kLongestBacklog = 100;

    Time interval_{};
    Time ideal_{}; // where next() would be had nothing ever been late
    Time next_{};
    Time began_{}; // the last tick, or the start
    Time usual_{}; // what ticks take: falls at once, and rises slowly
};

} // namespace runtime
