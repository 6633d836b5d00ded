#pragma once

#include "platform/timers.h"

#include <cstddef>
#include <vector>

namespace schedule {

/// Periodic timers whose ticks follow runtime::StepSchedule, over one alarm of the system. The system's
/// adapter sets the alarm and calls expired() on the thread of the ticks. Must outlive its timers.
class ScheduledTimers : public platform::Timers {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    ScheduledTimers() = default;
    ScheduledTimers(const ScheduledTimers&) = delete;
    ScheduledTimers& operator=(const ScheduledTimers&) = delete;
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;

  protected:
    /// The alarm went off: runs what is due, and sets the alarm anew.
    void expired();

  private:
    class Timer;

    virtual Time now() const = 0;
    /// Replaces the alarm. The moment may be in the past.
    virtual void setAlarm(Time when) = 0;

    Timer* earliest() const;
    void arm();

    std::vector<Timer*> running_;
    Time armed_{};
};

} // namespace schedule
