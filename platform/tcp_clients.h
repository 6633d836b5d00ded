#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// States of a TCP client, in the numbers by which the program shows them.
enum class TcpState {
    Closed = 0,
    Open = 1,
    Listening = 2,
    Waiting = 3,
    ResolvingName = 4,
    NameResolved = 5,
    Connecting = 6,
    Connected = 7,
    PeerClosing = 8,
    Error = 9
};

/// A connection, or the attempt at one; destroying it ends it without an event.
class TcpClient {
  public:
    virtual ~TcpClient() = default;
    virtual TcpState state() const = 0;
};

class TcpClients {
  public:
    /// Called on the user-interface thread; a client is not destroyed inside them.
    struct Events {
        std::function<void()> connected;
        std::function<void(const std::string& bytes)> received;
        /// The attempt failed or the connection was lost; nothing follows.
        std::function<void()> ended;
    };

    virtual ~TcpClients() = default;
    /// Never waits: resolving the name and connecting go on beside the window.
    virtual std::unique_ptr<TcpClient> connect(const std::string& host, int port, Events events) = 0;
};

} // namespace platform
