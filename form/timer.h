#pragma once

#include "form/control.h"
#include "platform/timers.h"

namespace form {

/// A periodic timer. Enabling one that is enabled does not restart it; a changed interval does. An interval
/// of 0 (or below) never fires.
class Timer : public Control {
  public:
    Timer(Form& form, std::string name, platform::Timers& timers, int interval = 0);

    Property<int> Interval; // milliseconds
    Property<bool> Enabled{*this, false};
    Event<> Tick{*this};

    /// Uses another period, above 0, until Interval or Enabled changes. The schedule is kept: the next tick
    /// is due one new period after the last tick was due. May be called from the tick. Does nothing if the
    /// timer is stopped.
    void setPeriod(std::chrono::nanoseconds period);
    /// The period in force; 0 if the timer is stopped.
    std::chrono::nanoseconds period() const { return period_; }
    /// The time until the next tick, negative if the tick is overdue. Precondition: the timer runs.
    std::chrono::nanoseconds untilTick() const { return clock_->untilTick(); }

  protected:
    void propertyChanged(const void* property) override;

  private:
    std::unique_ptr<platform::PeriodicTimer> clock_;
    std::chrono::nanoseconds period_{};
};

} // namespace form
