#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <set>

namespace bridge {

/// Chooses the next link to search for. Each search keeps the whole desktop busy for a moment, so only a few
/// run at once and the clients take turns: a client with many requests delays only itself.
class LinkTurns {
  public:
    static constexpr std::size_t kMost = 4;      // searches at once, as many as windows_ports::DdeLinks does
    static constexpr std::size_t kMostOfOne = 2; // the most searches of one client

    /// Calls `start` when it is this link's turn, perhaps at once. It must not let a client leave.
    void ask(int client, int link, std::function<void()> start);
    /// The search is over, or the link is not wanted any more. May start other searches at once.
    void done(int client, int link);
    /// Forgets a client. The next call of serve gives its turns to others.
    void leave(int client);
    /// Starts as many searches as allowed.
    void serve();

  private:
    struct Request {
        int link;
        std::function<void()> start;
    };
    struct Client {
        int number;
        std::deque<Request> waiting; // newest last
        std::set<int> searching;
    };

    std::list<Client>::iterator find(int client);

    std::list<Client> clients_; // the client with the latest turn is last
    std::size_t searching_ = 0;
    bool serving_ = false;
};

} // namespace bridge
