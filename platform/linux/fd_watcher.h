#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace linux_ports {

/// Watches one descriptor until it is destroyed, which may happen inside its own callback.
class FdWatch {
  public:
    virtual ~FdWatch() = default;
};

/// The event loop of the user-interface thread, as far as the adapters need it.
class FdWatcher {
  public:
    virtual ~FdWatcher() = default;
    /// Calls `ready` on the user-interface thread whenever `fd` can be read. The caller keeps the descriptor
    /// open longer than the watch. A call may come although another one has already read all there was.
    /// After each call the descriptor rests so long, which bounds what a flood of data costs.
    virtual std::unique_ptr<FdWatch> watch(int fd, std::function<void()> ready,
                                           std::chrono::milliseconds rest = {}) = 0;
    /// The same for writing: calls `ready` while `fd` has room for more.
    virtual std::unique_ptr<FdWatch> watchRoom(int fd, std::function<void()> ready) = 0;
};

} // namespace linux_ports
