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

    /// Ticks with another period, above 0, until Interval or Enabled changes, and keeps the schedule: the
    /// next tick comes one new period after the moment at which the last one was due. May be called from the
    /// tick. Does nothing while the timer stands.
    void setPeriod(std::chrono::nanoseconds period);
    /// The period in force; 0 while the timer stands.
    std::chrono::nanoseconds period() const { return period_; }
    /// How long the next tick is away; below 0 when it is overdue. Of a timer that runs.
    std::chrono::nanoseconds untilTick() const { return clock_->untilTick(); }

  protected:
    void propertyChanged(const void* property) override;

  private:
    std::unique_ptr<platform::PeriodicTimer> clock_;
    std::chrono::nanoseconds period_{};
};

} // namespace form
