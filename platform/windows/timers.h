#pragma once

#include "platform/timers.h"
#include "platform/windows/mailbox.h"

namespace windows_ports {

/// Timers of the kernel whose ticks follow runtime::StepSchedule, on the thread that made this object.
class Timers : public platform::Timers {
  public:
    /// Throws runtime::ObjectError when the system has no timer left.
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;

  private:
    Mailbox mailbox_;
};

} // namespace windows_ports
