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

/// Links to DDE servers. Each linked item has a conversation on its own thread: any hanging program in the
/// system blocks the search for a server, and this must not block anything else. Links to the same item share
/// the conversation; under Wine only one of several conversations about an item would get changes. Events
/// come on the thread that made this object.
class DdeLinks : public platform::DdeLinks {
  public:
    /// The most threads that search for a server at the same time; further searches wait for their turn. A
    /// cancelled search goes on while a program hangs.
    static constexpr int kMostSearches = 4;
    /// The most threads, and so the most items. Under Wine each thread takes one of the 256 connections of a
    /// display.
    static constexpr int kMostThreads = 64;

    explicit DdeLinks(platform::Timers& timers);
    DdeLinks(const DdeLinks&) = delete;
    DdeLinks& operator=(const DdeLinks&) = delete;
    /// Waits for the servers.
    ~DdeLinks() override;

    /// Call after all links are destroyed: gives the servers up to a second to notice.
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
    /// Outlives this object if a thread hangs.
    std::shared_ptr<std::atomic<int>> threads_ = std::make_shared<std::atomic<int>>(0);
};

} // namespace windows_ports
