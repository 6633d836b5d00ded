#pragma once

#include "bridge/protocol.h"
#include "platform/tcp_clients.h"
#include "platform/timers.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bridge_ports {

struct Address {
    std::string host = "127.0.0.1"; // name or address
    int port = bridge::kPort;
    bool operator==(const Address&) const = default;
};

/// A part of the program that uses the bridge. Of these functions only bridgeSaid may call code outside the
/// adapters.
class User {
  public:
    /// Whether a lost connection must be restored.
    virtual bool wantsBridge() const = 0;
    /// Called after connecting: sends everything that the bridge must know. The bridge has forgotten earlier
    /// connections.
    virtual void bridgeConnected() = 0;
    /// The connection was lost, or a connection attempt failed.
    virtual void bridgeLost() = 0;
    /// Handles a line from the bridge. Returns whether the line was valid and for this user.
    virtual bool bridgeSaid(const std::vector<std::string>& fields) = 0;

  protected:
    ~User() = default;
};

/// The connection to the bridge. It is opened when a user first needs it, then kept, and restored after a
/// loss as long as a user wants it. No function waits.
class Connection {
  public:
    /// `programVersion` is sent to the bridge.
    Connection(platform::TcpClients& tcp, platform::Timers& timers, std::string programVersion,
               Address address);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() = default;

    /// Users are called in the order in which they were added. A user must leave before the connection is
    /// destroyed.
    void attach(User& user);
    void detach(User& user);

    /// Sets another bridge; ends the connection to the old bridge and everything that depends on it.
    void setAddress(const Address& address);
    /// Keeps the connection from now on, even if no user needs it: for an address that the user has entered.
    void stayConnected(bool stay);

    /// Connects at once, unless there is a connection or an attempt.
    void ask();
    bool connected() const { return connected_; }
    /// Sends a line. Returns false if there is no connection or the line would be too long.
    bool say(const std::vector<std::string_view>& fields);

    /// The state in one line for the user, such as "bridge 127.0.0.1:7380 connected". It may quote the
    /// bridge, so never show it as markup.
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
    Address address_;
    std::vector<User*> users_;
    std::unique_ptr<platform::PeriodicTimer> retry_, ping_, silence_;
    std::unique_ptr<platform::TcpClient> client_;
    bridge::LineReader reader_;
    std::string peer_;    // name and version of the bridge that is connected
    std::string reason_;  // why there is no connection, if known
    std::string refusal_; // the bridge's answer instead of a greeting
    std::string remark_;  // the bridge's last error line
    bool stay_ = false;
    bool connected_ = false; // greeted by a bridge of our protocol version
    bool stuck_ = false;     // the bridge does not read what we send
    long long pings_ = 0;
    std::size_t losses_ = 0;          // since a connection last held
    unsigned long notUnderstood_ = 0; // lines, since the connection was made
};

} // namespace bridge_ports
