#pragma once

#include "platform/tcp_clients.h"

namespace qt_ports {

/// TCP over the toolkit's sockets, which resolve names and connect beside the event loop.
class TcpClients : public platform::TcpClients {
  public:
    std::unique_ptr<platform::TcpClient> connect(const std::string& host, int port, Events events) override;
};

} // namespace qt_ports
