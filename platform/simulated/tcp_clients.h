#pragma once

#include "platform/tcp_clients.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace simulated {

/// TCP servers that exist only in memory. An attempt is answered when answer is called, as a network does.
class TcpClients : public platform::TcpClients {
  public:
    std::unique_ptr<platform::TcpClient> connect(const std::string& host, int port, Events events) override;

    void listen(int port) { listening_.insert(port); }
    void stopListening(int port) { listening_.erase(port); }
    /// Lets the attempts that are under way succeed or fail.
    void answer();
    void send(const std::string& bytes);
    /// What the clients have sent since the last call.
    std::string takeSent() { return std::exchange(sent_, {}); }
    /// From now on the servers read nothing, or read again.
    void stopReading(bool stop) { reading_ = !stop; }
    /// The servers end all connections.
    void drop();
    int attempts() const { return attempts_; }
    /// Clients that are connected or about to be.
    std::size_t clients() const { return clients_.size(); }
    /// "host:port" of the last attempt.
    const std::string& lastAddress() const { return lastAddress_; }

  private:
    class Client;
    template <class Action>
    void each(const Action& action);

    std::set<int> listening_;
    std::vector<Client*> clients_;
    std::string sent_;
    std::string lastAddress_;
    bool reading_ = true;
    int attempts_ = 0;
};

} // namespace simulated
