#include "platform/simulated/tcp_clients.h"

#include <algorithm>

namespace simulated {

/// A callback may destroy its client: what runs is kept by events that are shared.
class TcpClients::Client : public platform::TcpClient {
  public:
    Client(TcpClients& owner, int port, Events events)
        : owner_(owner), port_(port), events_(std::make_shared<const Events>(std::move(events))) {
        owner_.clients_.push_back(this);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() override { std::erase(owner_.clients_, this); }

    platform::TcpState state() const override { return state_; }

    bool send(std::string_view bytes) override {
        if (state_ != platform::TcpState::Connected) return false;
        unsent_ = owner_.reading_ ? 0 : unsent_ + bytes.size();
        if (unsent_ > kMostUnsent) return false;
        if (owner_.reading_) owner_.sent_ += bytes;
        return true;
    }

    void answer() {
        if (state_ != platform::TcpState::Connecting) return;
        const auto events = events_;
        if (owner_.listening_.contains(port_)) {
            state_ = platform::TcpState::Connected;
            events->connected();
        } else {
            state_ = platform::TcpState::Error;
            events->ended();
        }
    }
    void drop() {
        if (state_ != platform::TcpState::Connected) return;
        state_ = platform::TcpState::Closed;
        const auto events = events_;
        events->ended();
    }
    void receive(const std::string& bytes) {
        if (state_ != platform::TcpState::Connected) return;
        const auto events = events_;
        events->received(bytes);
    }

  private:
    TcpClients& owner_;
    int port_;
    std::shared_ptr<const Events> events_;
    std::size_t unsent_ = 0;
    platform::TcpState state_ = platform::TcpState::Connecting;
};

std::unique_ptr<platform::TcpClient> TcpClients::connect(const std::string& host, int port, Events events) {
    ++attempts_;
    lastAddress_ = host + ":" + std::to_string(port);
    return std::make_unique<Client>(*this, port, std::move(events));
}

template <class Action>
void TcpClients::each(const Action& action) {
    for (Client* client : std::vector(clients_))
        if (std::ranges::find(clients_, client) != clients_.end()) action(*client);
}

void TcpClients::answer() {
    each([](Client& client) { client.answer(); });
}

void TcpClients::send(const std::string& bytes) {
    each([&bytes](Client& client) { client.receive(bytes); });
}

void TcpClients::drop() {
    each([](Client& client) { client.drop(); });
}

} // namespace simulated
