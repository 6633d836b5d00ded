#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/tcp_server.h"

namespace linux_ports {

/// Listening sockets of the kernel. Connections are accepted one at a time and read in small pieces, with a
/// rest after each, so that no flood keeps the step timers waiting.
class TcpServers : public platform::TcpServers {
  public:
    explicit TcpServers(FdWatcher& watcher) : watcher_(watcher) {}
    std::unique_ptr<platform::TcpServer> listen(const std::string& address, int port,
                                                Accepted accepted) override;

  private:
    FdWatcher& watcher_;
};

} // namespace linux_ports
