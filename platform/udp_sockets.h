#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// A bound UDP socket; destroying it frees the port.
class UdpSocket {
  public:
    virtual ~UdpSocket() = default;
};

class UdpSockets {
  public:
    using Receiver = std::function<void(const std::string& datagram)>;

    virtual ~UdpSockets() = default;
    /// Listens for datagrams to `port` (1 to 65535) at the address that the user has chosen. Throws
    /// runtime::ObjectError, naming port and reason, if the socket cannot be bound.
    virtual std::unique_ptr<UdpSocket> bind(int port, Receiver receiver) = 0;
};

} // namespace platform
