#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// An accepted connection; destroying it closes it without an event, after what was sent. It may be destroyed
/// inside `received` and `ended`.
class TcpConnection {
  public:
    struct Events {
        std::function<void(std::string_view bytes)> received;
        /// After a send that was cut short: there is room again.
        std::function<void()> writable;
        /// The peer closed the connection, or it broke; nothing follows.
        std::function<void()> ended;
    };

    virtual ~TcpConnection() = default;
    /// Lets the events come, never during the call. Called once.
    virtual void start(Events events) = 0;
    /// Hands bytes to the system without waiting; returns how many it took.
    virtual std::size_t send(std::string_view bytes) = 0;
};

/// A listening socket; destroying it frees the port. Accepted connections live on.
class TcpServer {
  public:
    virtual ~TcpServer() = default;
};

class TcpServers {
  public:
    struct Addresses {
        std::string peer; // "192.168.1.20"
        std::string here; // the one of this computer that the peer has reached
    };
    using Accepted =
        std::function<void(std::unique_ptr<TcpConnection> connection, const Addresses& addresses)>;

    virtual ~TcpServers() = default;
    /// Listens at an IPv4 address of this computer, alone at this port. Throws runtime::ObjectError, naming
    /// address, port and reason, when it cannot.
    virtual std::unique_ptr<TcpServer> listen(const std::string& address, int port, Accepted accepted) = 0;
};

} // namespace platform
