#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// An accepted connection. Destroying it closes the connection without an event, after the sent bytes. It may
/// be destroyed inside `received` and `ended`.
class TcpConnection {
  public:
    struct Events {
        std::function<void(std::string_view bytes)> received;
        /// Called after an incomplete send, when there is room again.
        std::function<void()> writable;
        /// The peer closed the connection, or the connection broke. The last event.
        std::function<void()> ended;
    };

    virtual ~TcpConnection() = default;
    /// Starts the events; none comes during the call. Call it once.
    virtual void start(Events events) = 0;
    /// Passes bytes to the system without waiting; returns the number of bytes accepted.
    virtual std::size_t send(std::string_view bytes) = 0;
};

/// A listening socket. Destroying it frees the port; accepted connections stay open.
class TcpServer {
  public:
    virtual ~TcpServer() = default;
};

class TcpServers {
  public:
    struct Addresses {
        std::string peer; // "192.168.1.20"
        std::string here; // the address of this computer to which the peer has connected
    };
    using Accepted =
        std::function<void(std::unique_ptr<TcpConnection> connection, const Addresses& addresses)>;

    virtual ~TcpServers() = default;
    /// Listens at an IPv4 address of this computer, with exclusive use of the port. Throws
    /// runtime::ObjectError, naming address, port and reason.
    virtual std::unique_ptr<TcpServer> listen(const std::string& address, int port, Accepted accepted) = 0;
};

} // namespace platform
