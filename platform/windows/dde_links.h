#pragma once

#include "platform/dde_links.h"
#include "platform/timers.h"
#include "platform/windows/dde_conversation.h"
#include "platform/windows/mailbox.h"

#include <atomic>
#include <deque>
#include <memory>
#include <vector>

namespace windows_ports {

/// Links to DDE servers. Each item that is linked has a conversation on a thread of its own: a program that
/// hangs somewhere in the system keeps the search for a server waiting, and must keep nobody else. Links to
/// the same item share it; under Wine only one of several conversations about an item would hear of changes.
/// Events come on the thread that made this object.
class DdeLinks : public platform::DdeLinks {
  public:
    /// Threads that search for a server at once; further ones wait for their turn. One that is given up while
    /// a program hangs goes on searching.
    static constexpr int kMostSearches = 4;
    /// Threads in all, and so items. Under Wine each takes one of the 256 connections that a display has.
    static constexpr int kMostThreads = 64;

    explicit DdeLinks(platform::Timers& timers);
    DdeLinks(const DdeLinks&) = delete;
    DdeLinks& operator=(const DdeLinks&) = delete;
    /// Waits for the servers.
    ~DdeLinks() override;

    /// Once the links are gone: gives the servers up to a second to hear of it.
    void waitForServers() const;

    std::unique_ptr<platform::DdeLink> open(const std::string& topic, const std::string& item,
                                            platform::DdeEvents events) override;

  private:
    class Link;
    struct Feed;

    std::shared_ptr<Feed> feedOf(const DdeItem& item);
    void startNext();
    static void run(const std::shared_ptr<Feed>& feed, const Mailbox::Slot& slot,
                    const Mailbox::Call& searched);
    static void deliver(const std::shared_ptr<Feed>& feed);

    platform::Timers& timers_;
    Mailbox mailbox_;
    std::vector<std::weak_ptr<Feed>> feeds_;
    std::deque<std::weak_ptr<Feed>> waiting_; // those that have no thread yet
    int searches_ = 0;
    /// Outlives this object where a thread hangs.
    std::shared_ptr<std::atomic<int>> threads_ = std::make_shared<std::atomic<int>>(0);
};

} // namespace windows_ports
