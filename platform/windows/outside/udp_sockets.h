#pragma once

#include "platform/udp_sockets.h"

#include <string>

namespace windows_ports {

/// UDP over IPv4, listening at one address of this computer, or at all of them (0.0.0.0). Datagrams come
/// through the message loop of the thread that binds. Winsock must be started: see TcpServers.
class UdpSockets : public platform::UdpSockets {
  public:
    explicit UdpSockets(std::string address) : address_(std::move(address)) {}
    /// Sets the address for sockets bound from now on.
    void setAddress(std::string address) { address_ = std::move(address); }
    std::unique_ptr<platform::UdpSocket> bind(int port, Receiver receiver) override;

  private:
    std::string address_;
};

} // namespace windows_ports
