#include "platform/simulated/tcp_servers.h"

#include "runtime/errors.h"

#include <algorithm>

namespace simulated {

class TcpServers::Server : public platform::TcpServer {
  public:
    Server(TcpServers& owner, int port) : owner_(owner), port_(port) {}
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server() override { owner_.listening_.erase(port_); }

  private:
    TcpServers& owner_;
    int port_;
};

class TcpServers::Connection : public platform::TcpConnection {
  public:
    explicit Connection(std::shared_ptr<Peer> peer) : peer_(std::move(peer)) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override {
        peer_->events_.reset();
        peer_->closed_ = true;
    }

    void start(Events events) override { peer_->events_ = std::make_shared<Events>(std::move(events)); }

    std::size_t send(std::string_view bytes) override {
        const auto taken = bytes.substr(0, peer_->room_);
        peer_->received_ += taken;
        peer_->room_ -= taken.size();
        return taken.size();
    }

  private:
    std::shared_ptr<Peer> peer_;
};

std::unique_ptr<platform::TcpServer> TcpServers::listen(const std::string& address, int port,
                                                        Accepted accepted) {
    if (listening_.contains(port)) {
        throw runtime::ObjectError("Cannot listen on " + address + ":" + std::to_string(port) +
                                   ": another program has this port");
    }
    listening_[port] = std::move(accepted);
    return std::make_unique<Server>(*this, port);
}

std::shared_ptr<TcpServers::Peer> TcpServers::connect(int port, const Addresses& addresses) {
    auto peer = std::make_shared<Peer>();
    listening_.at(port)(std::make_unique<Connection>(peer), addresses);
    return peer;
}

void TcpServers::Peer::send(std::string_view bytes) {
    // The connection may go during the event.
    if (const auto events = events_) events->received(bytes);
}

void TcpServers::Peer::close() {
    if (const auto events = events_) events->ended();
}

void TcpServers::Peer::take(std::size_t bytes) {
    room_ = bytes;
    if (const auto events = events_) events->writable();
}

} // namespace simulated
