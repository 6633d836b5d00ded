#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

/// A periodic timer that ticks on the user-interface thread. It is born stopped.
class PeriodicTimer {
  public:
    virtual ~PeriodicTimer() = default;
    /// Starts, or starts anew, with the first tick one period from now. `period` is above 0.
    virtual void start(std::chrono::nanoseconds period) = 0;
    /// Changes the period of a timer that runs, and keeps its schedule: the next tick comes one new period
    /// after the moment at which the last one was due. `period` is above 0. May be called from the tick.
    virtual void setPeriod(std::chrono::nanoseconds period) = 0;
    /// No tick comes after this, not even one that was already due.
    virtual void stop() = 0;
    /// How long the next tick of a timer that runs is away; below 0 when it is overdue.
    virtual std::chrono::nanoseconds untilTick() const = 0;
};

class Timers {
  public:
    virtual ~Timers() = default;
    virtual std::unique_ptr<PeriodicTimer> create(std::function<void()> tick) = 0;
};

} // namespace platform
