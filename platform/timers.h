#pragma once

#include <functional>
#include <memory>

namespace platform {

/// A periodic timer that ticks on the user-interface thread. It is born stopped.
class PeriodicTimer {
  public:
    virtual ~PeriodicTimer() = default;
    /// Starts, or starts anew, with the first tick one interval from now. `milliseconds` is above 0.
    virtual void start(int milliseconds) = 0;
    /// No tick comes after this, not even one that was already due.
    virtual void stop() = 0;
};

class Timers {
  public:
    virtual ~Timers() = default;
    virtual std::unique_ptr<PeriodicTimer> create(std::function<void()> tick) = 0;
};

} // namespace platform
