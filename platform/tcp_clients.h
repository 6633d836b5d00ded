#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// States of a TCP client; the numbers select the texts that the window shows.
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

/// A connection or a connection attempt. Destroying the object ends it without an event; this is allowed
/// inside its own events. Accepted bytes are still sent as far as the network takes them at once.
class TcpClient {
  public:
    /// The most bytes that may wait for a peer that does not read.
    static constexpr std::size_t kMostUnsent = 64 << 10;

    virtual ~TcpClient() = default;
    virtual TcpState state() const = 0;
    /// Accepts all of the bytes for sending, or none, and never waits. Accepts none if the client is not
    /// connected or if more than kMostUnsent bytes would wait.
    virtual bool send(std::string_view bytes) = 0;
};

class TcpClients {
  public:
    /// Called on the user-interface thread, and only after connect has returned. While a handler has a box
    /// open, further events come.
    struct Events {
        std::function<void()> connected;
        /// Called with a small piece at a time, so that a flood of bytes does not delay the step timers.
        std::function<void(const std::string& bytes)> received;
        /// The attempt failed or the connection was lost. The last event.
        std::function<void()> ended;
    };

    virtual ~TcpClients() = default;
    /// Never waits: the name is resolved and the connection made in the background.
    virtual std::unique_ptr<TcpClient> connect(const std::string& host, int port, Events events) = 0;
};

} // namespace platform
