#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/tcp_server.h"

namespace linux_ports {

/// Listening sockets of the kernel. Each turn of the event loop accepts one connection and takes one small
/// piece from each, so that no flood keeps the step timers waiting.
class TcpServers : public platform::TcpServers {
  public:
    explicit TcpServers(FdWatcher& watcher) : watcher_(watcher) {}
    std::unique_ptr<platform::TcpServer> listen(const std::string& address, int port,
                                                Accepted accepted) override;

  private:
    FdWatcher& watcher_;
};

} // namespace linux_ports
