#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/linux/file_descriptor.h"

#include <functional>
#include <memory>

namespace linux_ports {

/// Passes the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) to the event loop, from
/// construction on, and ignores SIGPIPE. Only one object may exist at a time.
///
/// Uses handlers instead of a signal mask, because started programs (a browser) would inherit a mask.
class EndSignals {
  public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals();

    /// Calls `end` from the event loop for all signals since construction, until the returned watch is
    /// destroyed.
    std::unique_ptr<FdWatch> deliver(FdWatcher& watcher, std::function<void()> end);

  private:
    FileDescriptor fd_;
};

} // namespace linux_ports
