#pragma once

#include "bridge/session.h"
#include "platform/tcp_server.h"
#include "platform/timers.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace bridge {

/// How much the bridge has to do.
struct State {
    int controllers = 0;
    int links = 0;
    bool operator==(const State&) const = default;
};

/// "2 controllers, 1 link"
std::string toText(const State& state);

/// Accepts clients and keeps each one's session, as long as it keeps to the limits.
class Server {
  public:
    struct Ports {
        platform::DdeLinks& links;
        platform::StationMessages& station;
        platform::Timers& timers;
        platform::TcpServers& tcp;
    };
    struct Settings {
        std::string address; // where to listen
        int port = kPort;
        std::vector<std::string> allowed; // peers beside this computer itself
        std::string version;              // of the program
    };
    struct Events {
        std::function<void(const std::string& line)> log;
        std::function<void(const State& state)> changed;
    };

    static constexpr std::size_t kMostClients = 8;
    static constexpr int kMostOfOnePeer = 4;              // clients of another computer
    static constexpr std::size_t kMostUnsent = 64 * 1024; // bytes to one client
    static constexpr std::size_t kMostInput = 64 * 1024;  // bytes in a second from one client

    /// Throws runtime::ObjectError when it cannot listen.
    Server(const Ports& ports, Settings settings, Events events);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

  private:
    class Client;

    using Addresses = platform::TcpServers::Addresses;

    void accept(std::unique_ptr<platform::TcpConnection> connection, const Addresses& addresses);
    bool allows(const Addresses& addresses) const;
    /// Whether the limit of clients is reached, in all or for this peer.
    bool isFull(const std::string& peer) const;
    void tick();
    /// Destroys finished clients, and reports the state if it has changed.
    void sweep();

    Settings settings_;
    Events events_;
    RegisteredMessages messages_;
    LinkTurns turns_;
    Outside outside_;
    int accepted_ = 0;
    State told_;
    std::list<std::unique_ptr<Client>> clients_;
    std::unique_ptr<platform::PeriodicTimer> timer_;
    std::unique_ptr<platform::TcpServer> listener_;
};

} // namespace bridge
