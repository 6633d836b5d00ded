#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/linux/file_descriptor.h"

#include <functional>
#include <memory>

namespace linux_ports {

/// Brings the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into the event loop, from its
/// construction on, and takes SIGPIPE out of the way. One object at a time.
///
/// Handlers and not a signal mask, because the programs that this one starts (a browser) would inherit a
/// mask.
class EndSignals {
  public:
    EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals();

    /// Calls `end` from the event loop for the signals to come and those that came before, until the returned
    /// watch is destroyed.
    std::unique_ptr<FdWatch> deliver(FdWatcher& watcher, std::function<void()> end);

  private:
    FileDescriptor fd_;
};

} // namespace linux_ports
