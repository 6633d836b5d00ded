#pragma once

#include "form/control.h"
#include "platform/tcp_server.h"
#include "platform/timers.h"
#include "rotor/rotctld_protocol.h"

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rotor::rotctld {

/// Listens for the clients of the protocol and answers each in its turn.
class Server {
  public:
    struct Settings {
        std::string address; // IPv4, of this computer
        int port = 0;
        std::vector<std::string> allowed; // peers beside this computer itself
        bool operator==(const Settings&) const = default;
    };

    static constexpr std::size_t kMostClients = 16;
    static constexpr std::size_t kMostWaiting = 64U << 10;         // bytes from or to one client
    static constexpr std::chrono::milliseconds kMoveSilence{2000}; // until a move ends

    /// What fails in a command ends in `form`'s guard.
    Server(form::Form& form, platform::TcpServers& tcp, platform::Timers& timers, Rotator& rotator);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

    /// Listens there, anew where that is another place; clients of the same place stay.
    void listen(const Settings& settings);
    /// Listens no longer; all clients are disconnected.
    void close();

    std::size_t clients() const { return clients_.size(); }
    /// Why it does not listen although it should; empty when all is well.
    const std::string& failure() const { return failure_; }

    /// A client has come or gone, or listening has begun, ended or failed.
    std::function<void()> onChange;

  private:
    class Client;

    void accept(std::unique_ptr<platform::TcpConnection> connection, const std::string& peer,
                const std::string& here);
    bool allows(const std::string& peer, const std::string& here) const;
    Answer obey(const Client& client, const std::string& line);
    void endMove();
    /// Lets go of the clients that are over.
    void sweep();

    form::Form& form_;
    platform::TcpServers& tcp_;
    Rotator& rotator_;
    std::optional<Settings> settings_;
    std::string failure_;
    std::unique_ptr<platform::PeriodicTimer> moveSilence_;
    const Client* mover_ = nullptr; // whose move is under way, perhaps replaced by now
    std::list<std::shared_ptr<Client>> clients_;
    std::unique_ptr<platform::TcpServer> listener_;
};

} // namespace rotor::rotctld
