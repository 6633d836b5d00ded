#pragma once

#include "round.h"

#include <limits>

namespace bench {

/// What a timer does about ticks that are overdue.
struct Habit {
    /// Behind by more than this many intervals, it gives up what was missed; until then it makes it up.
    double makesUp = std::numeric_limits<double>::infinity();
    /// Having given up, it goes on in the old beat, not in a new one.
    bool keepsBeat = true;
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
    /// Ticks that never came.
    std::int64_t lost() const { return lost_; }
    /// 0.01: one per cent too fast.
    double rateError() const;
    double cpuShare() const { return rounds_ > 0 ? cpuShares_ / rounds_ : 0; }
    const std::vector<Nanoseconds>& spacings() const { return spacings_; }

  private:
    void addLateness(const std::vector<Nanoseconds>& ticks);
    static Spread spread(std::vector<Nanoseconds> values);

    Habit habit_;
    std::vector<Nanoseconds> spacings_, latenesses_;
    std::int64_t lost_ = 0;
    Nanoseconds time_ = 0; // from each first tick to its last
    double cpuShares_ = 0;
    int rounds_ = 0;
};

/// Of one series, as above.
double rateError(const Series& series);

} // namespace bench
