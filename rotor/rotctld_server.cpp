#include "rotor/rotctld_server.h"

#include "runtime/errors.h"

#include <algorithm>
#include <utility>

namespace rotor::rotctld {

/// A connection and what has come from it. Others destroy it when it is over, also while a box is open in the
/// middle of one of its commands.
class Server::Client : public std::enable_shared_from_this<Client> {
  public:
    Client(Server& server, std::unique_ptr<platform::TcpConnection> connection)
        : server_(server), connection_(std::move(connection)) {}

    void start() {
        connection_->start({[this](std::string_view bytes) { receive(bytes); }, [this] { flush(); },
                            [this] {
                                over_ = true;
                                server_.sweep();
                            }});
    }
    bool over() const { return over_; }

  private:
    void receive(std::string_view bytes) {
        const auto self = shared_from_this();
        if (server_.mover_ == this) server_.moveSilence_->start(kMoveSilence);
        input_ += bytes;
        if (busy_) {
            over_ = over_ || input_.size() > kMostWaiting;
        } else {
            busy_ = true;
            obeyInput();
            busy_ = false;
            flush();
        }
        server_.sweep();
    }

    void obeyInput() {
        while (!over_ && !input_.empty()) {
            const std::size_t end = std::min(input_.find_first_of("\r\n"), input_.size());
            const bool whole = end < input_.size();
            // One byte more than a line may have tells that it is too long.
            line_ += input_.substr(0, std::min(end, kLongestLine + 1 - line_.size()));
            input_.erase(0, end + 1);
            if (isFromBrowser(line_)) {
                unsent_.clear();
                over_ = true;
            } else if (whole && !line_.empty()) {
                const Answer answer = server_.obey(*this, std::exchange(line_, {}));
                unsent_ += answer.text;
                over_ = over_ || answer.quits;
            }
        }
    }

    void flush() {
        unsent_.erase(0, connection_->send(unsent_));
        if (unsent_.size() > kMostWaiting) over_ = true; // it does not take what it asks for
    }

    Server& server_;
    bool over_ = false;
    bool busy_ = false;
    std::string input_;
    std::string line_;
    std::string unsent_;
    std::unique_ptr<platform::TcpConnection> connection_;
};

Server::Server(form::Form& form, platform::TcpServers& tcp, platform::Timers& timers, Rotator& rotator)
    : form_(form), tcp_(tcp), rotator_(rotator),
      moveSilence_(timers.create([this] { form_.guard([this] { endMove(); }); })) {}

Server::~Server() = default;

void Server::listen(const Settings& settings) {
    if (listener_ && settings_ == settings) return;
    close();
    settings_ = settings;
    try {
        listener_ =
            tcp_.listen(settings.address, settings.port, [this](auto connection, const auto& addresses) {
                accept(std::move(connection), addresses.peer, addresses.here);
            });
    } catch (const runtime::ObjectError& error) {
        failure_ = error.what();
    }
    if (onChange) onChange();
}

void Server::close() {
    listener_.reset();
    failure_.clear();
    endMove();
    clients_.clear();
    if (onChange) onChange();
}

bool Server::allows(const std::string& peer, const std::string& here) const {
    // One that reaches itself is this computer, by whatever address.
    return peer.starts_with("127.") || peer == here ||
           std::ranges::find(settings_->allowed, peer) != settings_->allowed.end();
}

void Server::accept(std::unique_ptr<platform::TcpConnection> connection, const std::string& peer,
                    const std::string& here) {
    if (clients_.size() >= kMostClients || !allows(peer, here)) return;
    clients_.push_back(std::make_shared<Client>(*this, std::move(connection)));
    clients_.back()->start();
    if (onChange) onChange();
}

Answer Server::obey(const Client& client, const std::string& line) {
    if (line.size() > kLongestLine) return {.text = result(Result::kInvalid)};
    rotator_.heard();
    Answer answer{.text = result(Result::kFailed)};
    form_.guard([&] { answer = rotctld::obey(rotator_, line); });
    if (answer.moves) {
        mover_ = &client;
        moveSilence_->start(kMoveSilence);
    }
    return answer;
}

void Server::endMove() {
    moveSilence_->stop();
    if (std::exchange(mover_, nullptr)) rotator_.endMove();
}

void Server::sweep() {
    const auto over = [](const auto& client) { return client->over(); };
    if (std::ranges::none_of(clients_, over)) return;
    if (mover_ && mover_->over()) form_.guard([this] { endMove(); });
    std::erase_if(clients_, over);
    if (onChange) onChange();
}

} // namespace rotor::rotctld
