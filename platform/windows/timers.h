#pragma once

#include "platform/schedule/scheduled_timers.h"
#include "platform/windows/mailbox.h"

#include <atomic>
#include <thread>

namespace windows_ports {

/// Timers that share one timer of the kernel. A thread waits for it and posts; the ticks run on the thread
/// that made this object.
///
/// Where the system lets a wait last much longer than asked for, the thread waits less than that and yields
/// its processor until the moment: Wine rounds waits up to whole milliseconds, and a Windows without
/// high-resolution timers to its clock's 16.
class Timers : public schedule::ScheduledTimers {
  public:
    /// Throws runtime::ObjectError when the system has no timer left.
    Timers();
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    ~Timers() override;

  private:
    Time now() const override;
    void setAlarm(Time when) override;
    void waitForAlarms();

    Mailbox mailbox_;
    const HANDLE timer_;
    Time early_{}; // the wait ends so long before the moment
    std::atomic<Time::rep> when_;
    std::atomic<unsigned> alarms_ = 0; // that were set
    std::atomic<bool> awake_ = false;  // the thread does not wait for the timer
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

} // namespace windows_ports
