#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/linux/file_descriptor.h"
#include "platform/schedule/scheduled_timers.h"

namespace linux_ports {

/// Timers that share one kernel timer. Ticks that are due together run one after the other, and the event
/// loop does nothing else between them.
class Timers : public schedule::ScheduledTimers {
  public:
    /// Throws runtime::ObjectError if the kernel has no timer left.
    explicit Timers(FdWatcher& watcher);

  private:
    Time now() const override;
    void setAlarm(Time when) override;

    FileDescriptor fd_;
    std::unique_ptr<FdWatch> watch_;
};

} // namespace linux_ports
