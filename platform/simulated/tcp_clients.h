#pragma once

#include "platform/tcp_clients.h"

#include <set>
#include <string>
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
    /// The servers end all connections.
    void drop();
    int attempts() const { return attempts_; }

  private:
    class Client;
    std::set<int> listening_;
    std::vector<Client*> clients_;
    int attempts_ = 0;
};

} // namespace simulated
