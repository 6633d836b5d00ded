#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <set>

namespace bridge {

/// Whose link is searched for next. Each search keeps the whole desktop busy for a moment, so there are few
/// at once, and clients have theirs in turn: one that asks for many waits for them alone.
class LinkTurns {
  public:
    static constexpr std::size_t kMost = 4;      // searches at once, as many as windows_ports::DdeLinks does
    static constexpr std::size_t kMostOfOne = 2; // of them, those of one client

    /// Calls `start` when it is this link's turn, perhaps at once. It must not let a client leave.
    void ask(int client, int link, std::function<void()> start);
    /// The search is over, or the link is not wanted any more. Others may have their turn at once.
    void done(int client, int link);
    /// Forgets a client. What it held is free for others with the next call of serve.
    void leave(int client);
    /// Starts what may be started.
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

    std::list<Client> clients_; // the one that had a turn last is last
    std::size_t searching_ = 0;
    bool serving_ = false;
};

} // namespace bridge
