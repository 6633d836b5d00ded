#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/timers.h"

namespace linux_ports {

/// Timers of the kernel, one descriptor each, whose ticks follow runtime::StepSchedule.
class Timers : public platform::Timers {
  public:
    explicit Timers(FdWatcher& watcher) : watcher_(watcher) {}
    /// Throws runtime::ObjectError when the system has no descriptor left.
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;

  private:
    FdWatcher& watcher_;
};

} // namespace linux_ports
