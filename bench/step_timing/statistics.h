#pragma once

#include "round.h"

#include <limits>

namespace bench {

/// What a timer does about ticks that are overdue.
struct Habit {
    /// It leaves them out, and keeps its beat. Otherwise it makes them up.
    bool skips = false;
    /// After a longer time without a tick, or when more is to be made up, it starts a new beat. In intervals.
    double longestStall = std::numeric_limits<double>::infinity();
    double longestBacklog = std::numeric_limits<double>::infinity();
};

/// In nanoseconds.
struct Spread {
    Nanoseconds least = 0, median = 0, p99 = 0, p999 = 0, most = 0;
};

/// All rounds of one subject together.
class Figures {
  public:
    explicit Figures(Habit habit) : habit_(habit) {}

    void add(const Round& round);

    bool empty() const { return spacings_.empty(); }
    Spread spacing() const { return spread(spacings_); }
    /// Behind the moment at which the tick was due. A beat begins with its earliest tick.
    Spread lateness() const { return spread(latenesses_); }
    /// Fewer ticks than the time had intervals.
    std::int64_t missing() const { return missing_; }
    /// 0.01: one per cent too fast.
    double rateError() const;
    double cpuShare() const { return rounds_ > 0 ? cpuShares_ / rounds_ : 0; }
    const std::vector<Nanoseconds>& spacings() const { return spacings_; }

  private:
    void addLateness(const std::vector<Nanoseconds>& ticks);
    static Spread spread(std::vector<Nanoseconds> values);

    Habit habit_;
    std::vector<Nanoseconds> spacings_, latenesses_;
    std::int64_t missing_ = 0;
    Nanoseconds time_ = 0; // from each first tick to its last
    double cpuShares_ = 0;
    int rounds_ = 0;
};

/// Of one series, as above.
double rateError(const Series& series);

} // namespace bench
