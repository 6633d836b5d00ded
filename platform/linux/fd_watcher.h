#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace linux_ports {

/// Watches one descriptor until the object is destroyed. The callback may destroy it.
class FdWatch {
  public:
    virtual ~FdWatch() = default;
};

/// The part of the user-interface thread's event loop that the adapters need.
class FdWatcher {
  public:
    virtual ~FdWatcher() = default;
    /// Calls `ready` on the user-interface thread whenever `fd` can be read. The descriptor must stay open
    /// longer than the watch. `ready` may also be called when there is nothing left to read. After each call
    /// the descriptor rests so long, which bounds what a flood of data costs.
    virtual std::unique_ptr<FdWatch> watch(int fd, std::function<void()> ready,
                                           std::chrono::milliseconds rest = {}) = 0;
    /// The same for writing: calls `ready` while `fd` can be written.
    virtual std::unique_ptr<FdWatch> watchRoom(int fd, std::function<void()> ready) = 0;
};

} // namespace linux_ports
