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

/// A connection and its session. It is over before it is destroyed: the server does that when none of its
/// calls is under way.
class Server::Client {
  public:
    Client(Server& server, std::unique_ptr<platform::TcpConnection> connection, int number, std::string name)
        : server_(server), name_(std::move(name)), connection_(std::move(connection)),
          session_(server.outside_, number, server.settings_.version,
                   {[this](const std::string& line) { send(line); },
                    [this](const std::string& text) { log(text); }}) {
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
        sinceSecond_ += Session::kTick;
        if (sinceSecond_ >= 1000) {
            sinceSecond_ = 0;
            received_ = 0;
        }
        session_.tick();
    }

    bool over() const { return over_ || session_.over(); }
    const Session& session() const { return session_; }

  private:
    void receive(std::string_view bytes) {
        if (!over()) {
            received_ += bytes.size();
            if (received_ > kMostInput) {
                finish("is dropped: it sends too much");
            } else {
                // What all its lines are answered goes out at once: each sending costs.
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
    std::string name_;
    bool over_ = false;
    bool receiving_ = false;
    std::string unsent_;
    std::size_t received_ = 0; // in the present second
    int sinceSecond_ = 0;      // milliseconds
    std::unique_ptr<platform::TcpConnection> connection_;
    Session session_;
};

Server::Server(const Ports& ports, Settings settings, Events events)
    : settings_(std::move(settings)), events_(std::move(events)),
      messages_(ports.station), outside_{ports.links, ports.station, messages_},
      timer_(ports.timers.create([this] { tick(); })),
      listener_(ports.tcp.listen(
          settings_.address, settings_.port,
          [this](auto connection, const std::string& peer) { accept(std::move(connection), peer); })) {
    events_.log("listens on " + settings_.address + ":" + std::to_string(settings_.port));
}

Server::~Server() = default;

bool Server::allows(const std::string& peer) const {
    return peer.starts_with("127.") || std::ranges::find(settings_.allowed, peer) != settings_.allowed.end();
}

void Server::accept(std::unique_ptr<platform::TcpConnection> connection, const std::string& peer) {
    if (!allows(peer)) {
        events_.log(peer + " is refused: it is not among the allowed addresses");
        return;
    }
    if (clients_.size() >= kMostClients) {
        events_.log(peer + " is refused: there are " + std::to_string(kMostClients) + " clients already");
        connection->send(join({"error", "too many clients"}));
        return;
    }
    const int number = ++accepted_;
    const std::string name = peer + " (" + std::to_string(number) + ")";
    events_.log(name + " has connected");
    clients_.push_back(std::make_unique<Client>(*this, std::move(connection), number, name));
    if (clients_.size() == 1) timer_->start(Session::kTick);
}

void Server::tick() {
    for (const auto& client : clients_)
        client->tick();
    sweep();
}

void Server::sweep() {
    std::erase_if(clients_, [](const auto& client) { return client->over(); });
    if (clients_.empty()) timer_->stop();
    State state;
    for (const auto& client : clients_) {
        state.controllers += client->session().greeted() ? 1 : 0;
        state.links += static_cast<int>(client->session().links());
    }
    if (std::exchange(told_, state) != state) events_.changed(state);
}

} // namespace bridge
