#pragma once

#include "bridge/protocol.h"
#include "platform/tcp_clients.h"
#include "platform/timers.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace linux_ports {

struct BridgeAddress {
    std::string host = "127.0.0.1"; // name or address
    int port = bridge::kPort;
    bool operator==(const BridgeAddress&) const = default;
};

/// A part of the program that speaks with the bridge. Only bridgeSaid may call out of the adapters.
class BridgeUser {
  public:
    /// Whether a lost connection is to be made anew.
    virtual bool wantsBridge() const = 0;
    /// A new connection, which knows nothing of an earlier one: says all that the bridge must know.
    virtual void bridgeConnected() = 0;
    /// A connection was lost, or an attempt at one failed.
    virtual void bridgeLost() = 0;
    /// A line of the bridge. Returns whether it was a good one for this user.
    virtual bool bridgeSaid(const std::vector<std::string>& fields) = 0;

  protected:
    ~BridgeUser() = default;
};

/// The connection to the bridge. At rest until someone asks for it; once made, it is kept, and made anew
/// after a loss as long as someone wants it. Nothing here waits.
class BridgeConnection {
  public:
    /// `programVersion` is what the bridge is told of us.
    BridgeConnection(platform::TcpClients& tcp, platform::Timers& timers, std::string programVersion,
                     BridgeAddress address);
    BridgeConnection(const BridgeConnection&) = delete;
    BridgeConnection& operator=(const BridgeConnection&) = delete;
    ~BridgeConnection() = default;

    /// Users are heard in the order in which they came, and leave before the connection goes.
    void attach(BridgeUser& user);
    void detach(BridgeUser& user);

    /// Another bridge: the connection to the old one ends, with all that came over it.
    void setAddress(const BridgeAddress& address);
    /// Wanted from now on, whether or not anyone asks: for an address that the user has named.
    void stayConnected(bool stay);

    /// Connects at once where there is no connection and no attempt at one.
    void ask();
    bool connected() const { return connected_; }
    /// Sends a line. False when there is no connection or the line would be too long.
    bool say(const std::vector<std::string_view>& fields);

    /// One plain line for the user, such as "bridge 127.0.0.1:7380 connected". It may quote the bridge, so
    /// it is not to be shown as markup.
    std::string stateText() const;

  private:
    bool wanted() const;
    void connect();
    void retry();
    void ping();
    void lost(std::string reason);
    void drop(std::string reason);
    void received(const std::string& bytes);
    void hear(const bridge::LineReader::Line& line);
    bool hearBeforeGreeting(const std::vector<std::string>& fields);
    bool hearWord(const std::vector<std::string>& fields);
    bool greet(const std::vector<std::string>& fields);

    platform::TcpClients& tcp_;
    const std::string programVersion_;
    BridgeAddress address_;
    std::vector<BridgeUser*> users_;
    std::unique_ptr<platform::PeriodicTimer> retry_, ping_, silence_;
    std::unique_ptr<platform::TcpClient> client_;
    bridge::LineReader reader_;
    std::string peer_;    // name and version of the bridge that is connected
    std::string reason_;  // why there is no connection, as far as it is known
    std::string refusal_; // what the bridge said instead of a greeting
    std::string remark_;  // the bridge's last error line
    bool stay_ = false;
    bool connected_ = false; // greeted by a bridge of our protocol version
    bool stuck_ = false;     // the bridge does not read what we send
    long long pings_ = 0;
    std::size_t losses_ = 0;          // since a connection last held
    unsigned long notUnderstood_ = 0; // lines, since the connection was made
};

} // namespace linux_ports
