#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/linux/file_descriptor.h"
#include "platform/timers.h"

#include <vector>

namespace linux_ports {

/// Timers that share one kernel timer; their ticks follow runtime::StepSchedule. Ticks that are due together
/// run one after the other, and the event loop does nothing else between them.
class Timers : public platform::Timers {
  public:
    /// Throws runtime::ObjectError if the kernel has no timer left. Must outlive its timers.
    explicit Timers(FdWatcher& watcher);
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;

  private:
    class Timer;
    Timer* earliest() const;
    void arm();
    void expired();

    std::vector<Timer*> running_;
    FileDescriptor fd_;
    std::chrono::nanoseconds armed_{};
    std::unique_ptr<FdWatch> watch_;
};

} // namespace linux_ports
