#pragma once

#include "platform/linux/file_descriptor.h"
#include "watchdog/messages.h"

#include <chrono>
#include <filesystem>
#include <sys/types.h>

namespace linux_ports {

/// One running watchdog, and the way to it. Nothing here calls back; Watchdog keeps one alive.
class WatchdogProcess {
  public:
    /// Starts it, in a session of its own and without any descriptor of this process. Throws
    /// runtime::ObjectError, naming the program and the reason, also when it ends at once.
    explicit WatchdogProcess(const std::filesystem::path& program);
    WatchdogProcess(const WatchdogProcess&) = delete;
    WatchdogProcess& operator=(const WatchdogProcess&) = delete;
    /// Says goodbye and waits for its end, 300 ms at most, so that the ports it shares are free again.
    ~WatchdogProcess();

    /// Sends a request, with a descriptor where one is given, and waits a second at most for the answer: an
    /// errno, 0 when it is done. ETIMEDOUT and EPIPE when there is no answer to be had.
    int ask(watchdog::Request& request, int descriptor = -1);
    /// Sends a request that has no answer. False when the watchdog has not read for a long time, or has
    /// ended.
    bool tell(const watchdog::Request& request);

    /// Where a request can be sent by others.
    int socket() const { return socket_.get(); }
    /// Not orderly: for one that does not answer any more.
    void kill() const;

    /// Readable once it has ended.
    int end() const { return process_.get(); }
    /// Readable once it has switched the outputs off because nothing was heard; take tells, and forgets it.
    int tripped() const { return tripped_.get(); }
    bool takeTripped() const;

  private:
    /// Returns an errno.
    int start(const std::filesystem::path& program);
    int ask(watchdog::Request& request, int descriptor, std::chrono::milliseconds longest);
    int send(const watchdog::Request& request, int descriptor) const;

    FileDescriptor socket_;
    FileDescriptor tripped_;
    pid_t pid_ = 0;
    FileDescriptor process_; // its pidfd
    std::uint32_t number_ = 0;
};

} // namespace linux_ports
