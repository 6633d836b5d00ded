#pragma once

#include "platform/tcp_server.h"

namespace windows_ports {

/// Listening sockets of Winsock, whose events come through the message loop of the thread that listens.
class TcpServers : public platform::TcpServers {
  public:
    /// Throws runtime::ObjectError when the system has no network.
    TcpServers();
    TcpServers(const TcpServers&) = delete;
    TcpServers& operator=(const TcpServers&) = delete;
    ~TcpServers() override;

    std::unique_ptr<platform::TcpServer> listen(const std::string& address, int port,
                                                Accepted accepted) override;
};

} // namespace windows_ports
