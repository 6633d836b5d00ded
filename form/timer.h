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

  protected:
    void propertyChanged(const void* property) override;

  private:
    std::unique_ptr<platform::PeriodicTimer> clock_;
};

} // namespace form
