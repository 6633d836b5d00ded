#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

/// A periodic timer that ticks on the user-interface thread. A new timer is stopped.
class PeriodicTimer {
  public:
    virtual ~PeriodicTimer() = default;
    /// Starts or restarts the timer; the first tick comes one period from now. `period` is above 0.
    virtual void start(std::chrono::nanoseconds period) = 0;
    /// Changes the period of a running timer and keeps its schedule: the next tick is due one new period
    /// after the last tick was due. `period` is above 0. May be called from the tick.
    virtual void setPeriod(std::chrono::nanoseconds period) = 0;
    /// Stops the timer: no tick comes any more, not even a tick that is already due.
    virtual void stop() = 0;
    /// The time until the next tick of a running timer; negative if the tick is overdue.
    virtual std::chrono::nanoseconds untilTick() const = 0;
};

class Timers {
  public:
    virtual ~Timers() = default;
    virtual std::unique_ptr<PeriodicTimer> create(std::function<void()> tick) = 0;
};

} // namespace platform
