#pragma once

#include "platform/linux/fd_watcher.h"

namespace qt_ports {

/// Descriptors watched by Qt's event loop. Needs a QCoreApplication.
class FdWatcher : public linux_ports::FdWatcher {
  public:
    std::unique_ptr<linux_ports::FdWatch> watch(int fd, std::function<void()> ready,
                                                std::chrono::milliseconds rest = {}) override;
    std::unique_ptr<linux_ports::FdWatch> watchRoom(int fd, std::function<void()> ready) override;
};

} // namespace qt_ports
