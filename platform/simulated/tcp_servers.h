#pragma once

#include "platform/tcp_server.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace simulated {

/// A network that exists only in memory, seen from a server.
class TcpServers : public platform::TcpServers {
  public:
    class Peer;

    std::unique_ptr<platform::TcpServer> listen(const std::string& address, int port,
                                                Accepted accepted) override;

    /// Another program takes the port.
    void occupy(int port) { listening_[port] = nullptr; }
    /// Another computer connects.
    std::shared_ptr<Peer> connect(int port, const Addresses& addresses);

  private:
    class Server;
    class Connection;
    std::map<int, Accepted> listening_; // empty: another program's
};

/// The other end of a connection.
class TcpServers::Peer {
  public:
    void send(std::string_view bytes);
    void close();
    /// What has come since the last call.
    std::string takeReceived() { return std::exchange(received_, {}); }
    /// The server has closed the connection.
    bool closed() const { return closed_; }
    /// From now on so many bytes are taken from the server, and no more until this is called again.
    void take(std::size_t bytes);

  private:
    friend Connection;
    /// The server's events; null before its start and after its end.
    std::shared_ptr<platform::TcpConnection::Events> events_;
    std::string received_;
    std::size_t room_ = static_cast<std::size_t>(-1);
    bool closed_ = false;
};

} // namespace simulated
