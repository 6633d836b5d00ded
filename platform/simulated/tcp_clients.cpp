#include "platform/simulated/tcp_clients.h"

#include <utility>

namespace simulated {

class TcpClients::Client : public platform::TcpClient {
  public:
    Client(TcpClients& owner, int port, Events events)
        : owner_(owner), port_(port), events_(std::move(events)) {
        owner_.clients_.push_back(this);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() override { std::erase(owner_.clients_, this); }

    platform::TcpState state() const override { return state_; }

    void answer() {
        if (state_ != platform::TcpState::Connecting) return;
        if (owner_.listening_.contains(port_)) {
            state_ = platform::TcpState::Connected;
            events_.connected();
        } else {
            state_ = platform::TcpState::Error;
            events_.ended();
        }
    }
    void drop() {
        if (state_ != platform::TcpState::Connected) return;
        state_ = platform::TcpState::Closed;
        events_.ended();
    }
    void receive(const std::string& bytes) {
        if (state_ == platform::TcpState::Connected) events_.received(bytes);
    }

  private:
    TcpClients& owner_;
    int port_;
    Events events_;
    platform::TcpState state_ = platform::TcpState::Connecting;
};

std::unique_ptr<platform::TcpClient> TcpClients::connect(const std::string& /*host*/, int port,
                                                         Events events) {
    ++attempts_;
    return std::make_unique<Client>(*this, port, std::move(events));
}

void TcpClients::answer() {
    for (Client* client : std::vector(clients_))
        client->answer();
}

void TcpClients::send(const std::string& bytes) {
    for (Client* client : std::vector(clients_))
        client->receive(bytes);
}

void TcpClients::drop() {
    for (Client* client : std::vector(clients_))
        client->drop();
}

} // namespace simulated
