#pragma once

#include "platform/windows/outside/handle.h"
#include "watchdog/windows/shared.h"

#include <filesystem>

namespace windows_ports {

/// One running watchdog, and the way to it. Nothing here calls back; Watchdog keeps one alive.
class WatchdogProcess {
  public:
    /// Throws runtime::ObjectError, naming the program and the reason, also when it ends at once.
    explicit WatchdogProcess(const std::filesystem::path& program);
    WatchdogProcess(const WatchdogProcess&) = delete;
    WatchdogProcess& operator=(const WatchdogProcess&) = delete;
    /// Says goodbye and waits for its end, 600 ms at most, so that the devices it shares are free again.
    ~WatchdogProcess();

    /// Waits a second at most for the answer: an error of GetLastError, 0 when it is done. ERROR_TIMEOUT and
    /// ERROR_BROKEN_PIPE when there is no answer to be had.
    DWORD ask(const watchdog::Request& request);
    /// This process is alive. Makes no system call.
    void beat(bool engineRuns);
    /// Not orderly: for one that does not answer any more.
    void kill() const { TerminateProcess(process_.get(), EXIT_FAILURE); }
    /// The same handle in the watchdog's process, which closes it. Null when the system refuses.
    HANDLE share(HANDLE handle) const;

    HANDLE process() const { return process_.get(); }
    /// An event, set once it has switched the outputs off because nothing was heard.
    HANDLE tripped() const { return tripped_.get(); }
    watchdog::Shared& shared() const { return *shared_; }
    HANDLE requestEvent() const { return request_.get(); }

  private:
    DWORD start(const std::filesystem::path& program);
    DWORD ask(const watchdog::Request& request, DWORD patience);

    Handle memory_, request_, answer_, tripped_, process_;
    watchdog::Shared* shared_ = nullptr;
};

} // namespace windows_ports
