#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/udp_sockets.h"

#include <netinet/in.h>
#include <optional>
#include <string>

namespace linux_ports {

/// The IPv4 address in `text` ("127.0.0.1"); empty if invalid.
std::optional<in_addr> parseAddress(const std::string& text);

/// UDP over IPv4, listening at one address of this computer, or at all of them (0.0.0.0).
class UdpSockets : public platform::UdpSockets {
  public:
    UdpSockets(FdWatcher& watcher, in_addr address) : watcher_(watcher), address_(address) {}
    /// Sets the address for sockets bound from now on.
    void setAddress(in_addr address) { address_ = address; }
    std::unique_ptr<platform::UdpSocket> bind(int port, Receiver receiver) override;

  private:
    FdWatcher& watcher_;
    in_addr address_;
};

} // namespace linux_ports
