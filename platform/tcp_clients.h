#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

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

/// A connection, or the attempt at one; destroying it ends it without an event, also inside one of its own.
/// What was taken for sending still goes out as far as the network takes it at once.
class TcpClient {
  public:
    /// Bytes that may wait for a peer that does not read.
    static constexpr std::size_t kMostUnsent = 64 << 10;

    virtual ~TcpClient() = default;
    virtual TcpState state() const = 0;
    /// Takes bytes for sending, all or none, and never waits. None when the client is not connected, or when
    /// more than kMostUnsent would wait.
    virtual bool send(std::string_view bytes) = 0;
};

class TcpClients {
  public:
    /// Called on the user-interface thread, and not before connect has returned. While one of them has a box
    /// open, the next ones come.
    struct Events {
        std::function<void()> connected;
        /// A small piece at a time, so that a flood of bytes cannot starve the step timers.
        std::function<void(const std::string& bytes)> received;
        /// The attempt failed or the connection was lost; nothing follows.
        std::function<void()> ended;
    };

    virtual ~TcpClients() = default;
    /// Never waits: resolving the name and connecting go on beside the window.
    virtual std::unique_ptr<TcpClient> connect(const std::string& host, int port, Events events) = 0;
};

} // namespace platform
