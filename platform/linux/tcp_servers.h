#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/tcp_server.h"

namespace linux_ports {

/// Listening sockets of the kernel. Connections are accepted one at a time and read in small pieces, with a
/// rest for all after each, so that no flood, from however many clients, keeps the step timers waiting.
class TcpServers : public platform::TcpServers {
  public:
    explicit TcpServers(FdWatcher& watcher) : watcher_(watcher) {}
    std::unique_ptr<platform::TcpServer> listen(const std::string& address, int port,
                                                Accepted accepted) override;

    class Turns;

  private:
    FdWatcher& watcher_;
    std::shared_ptr<Turns> turns_; // once it listens
};

} // namespace linux_ports
