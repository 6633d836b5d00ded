#include "bridge/server.h"

#include <algorithm>
#include <utility>

namespace bridge {

namespace {

std::string counted(int count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

} // namespace

std::string toText(const State& state) {
    return counted(state.controllers, "controller") + ", " + counted(state.links, "link");
}

/// A connection and its session. After its end it still exists for a moment: the server destroys it when none
/// of its functions is running.
class Server::Client {
  public:
    Client(Server& server, std::unique_ptr<platform::TcpConnection> connection, int number, std::string peer)
        : server_(server), peer_(std::move(peer)), name_(peer_ + " (" + std::to_string(number) + ")"),
          connection_(std::move(connection)), session_(server.outside_, number, server.settings_.version,
                                                       {[this](const std::string& line) { send(line); },
                                                        [this](const std::string& text) { log(text); }}) {
        log("has connected");
        connection_->start({[this](std::string_view bytes) { receive(bytes); }, [this] { flush(); },
                            [this] {
                                finish("has closed the connection");
                                server_.sweep();
                            }});
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() = default;

    void tick() {
        input_.pass(Session::kTick);
        session_.tick();
    }

    bool over() const { return over_ || session_.over(); }
    const Session& session() const { return session_; }
    const std::string& peer() const { return peer_; }

  private:
    void receive(std::string_view bytes) {
        if (!over()) {
            if (!input_.take(bytes.size())) {
                finish("is dropped: it sends too much");
            } else {
                // Sends the answers to all lines in one piece, because each send is costly.
                receiving_ = true;
                session_.receive(bytes);
                receiving_ = false;
                flush();
            }
        }
        server_.sweep();
    }

    void send(const std::string& line) {
        if (over_) return;
        unsent_ += line;
        if (!receiving_ || unsent_.size() > kMostUnsent) flush();
        if (unsent_.size() > kMostUnsent) finish("is dropped: it does not take what it is sent");
    }

    void flush() {
        if (!over_) unsent_.erase(0, connection_->send(unsent_));
    }

    void finish(const std::string& why) {
        if (!std::exchange(over_, true)) log(why);
    }

    void log(const std::string& text) const { server_.events_.log(name_ + " " + text); }

    Server& server_;
    std::string peer_;
    std::string name_;
    bool over_ = false;
    bool receiving_ = false;
    std::string unsent_;
    Allowance input_{kMostInput, 1000};
    std::unique_ptr<platform::TcpConnection> connection_;
    Session session_;
};

Server::Server(const Ports& ports, Settings settings, Events events)
    : settings_(std::move(settings)), events_(std::move(events)),
      messages_(ports.station), outside_{ports.links, ports.station, messages_, turns_},
      timer_(ports.timers.create([this] { tick(); })),
      listener_(
          ports.tcp.listen(settings_.address, settings_.port, [this](auto connection, const auto& addresses) {
              accept(std::move(connection), addresses);
          })) {
    events_.log("listens on " + settings_.address + ":" + std::to_string(settings_.port));
}

Server::~Server() = default;

bool Server::allows(const Addresses& addresses) const {
    // A connection from this computer itself, by any of its addresses.
    return addresses.peer.starts_with("127.") || addresses.peer == addresses.here ||
           std::ranges::find(settings_.allowed, addresses.peer) != settings_.allowed.end();
}

bool Server::isFull(const std::string& peer) const {
    if (clients_.size() >= kMostClients) return true;
    const auto ofPeer =
        std::ranges::count_if(clients_, [&](const auto& client) { return client->peer() == peer; });
    return ofPeer >= kMostOfOnePeer && !peer.starts_with("127.");
}

void Server::accept(std::unique_ptr<platform::TcpConnection> connection, const Addresses& addresses) {
    const std::string& peer = addresses.peer;
    if (!allows(addresses)) {
        events_.log(peer + " is refused: it is not among the allowed addresses");
        return;
    }
    if (isFull(peer)) {
        events_.log(peer + " is refused: there are too many clients already");
        connection->send(join({"error", "too many clients"}));
        return;
    }
    clients_.push_back(std::make_unique<Client>(*this, std::move(connection), ++accepted_, peer));
    if (clients_.size() == 1) timer_->start(std::chrono::milliseconds(Session::kTick));
}

void Server::tick() {
    for (const auto& client : clients_)
        client->tick();
    sweep();
}

void Server::sweep() {
    std::erase_if(clients_, [](const auto& client) { return client->over(); });
    turns_.serve();
    if (clients_.empty()) timer_->stop();
    State state;
    for (const auto& client : clients_) {
        state.controllers += client->session().greeted() ? 1 : 0;
        state.links += static_cast<int>(client->session().links());
    }
    if (std::exchange(told_, state) != state) events_.changed(state);
}

} // namespace bridge
