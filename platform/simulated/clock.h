#pragma once

#include "platform/schedule/scheduled_timers.h"

namespace simulated {

/// Virtual time: it passes only when advance says so. Timers that are due at the same moment tick in the
/// order in which they were started.
class Clock : public schedule::ScheduledTimers {
  public:
    /// Lets so much time pass, running the ticks that fall due.
    void advance(Time time);
    void advance(int milliseconds) { advance(std::chrono::milliseconds(milliseconds)); }
    Time now() const override { return now_; }

  private:
    void setAlarm(Time when) override { alarm_ = when; }

    Time now_{};
    Time alarm_ = Time::max();
};

} // namespace simulated
