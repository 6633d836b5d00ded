#include "platform/windows/dde_links.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace windows_ports {

namespace {

constexpr std::chrono::seconds kDeadline{1}; // in which a link is open or has failed

/// What the link's thread has to say, until the owner's thread fetches it.
class News {
  public:
    enum class Kind { Opened, Changed, Closed, Failed };
    struct Item {
        Kind kind;
        std::string text;
    };

    /// Whether the owner has to be called.
    bool add(Kind kind, std::string text) {
        const std::lock_guard lock(mutex_);
        if (kind == Kind::Changed) {
            // The owner does not keep up: old values are of no use to it. The newest is kept, however long.
            while (changes_ > 0 && (changes_ == kMostChanges || bytes_ + text.size() > kMostBytes))
                dropOldest();
            ++changes_;
            bytes_ += text.size();
        }
        items_.push_back({kind, std::move(text)});
        return items_.size() == 1;
    }

    std::deque<Item> take() {
        const std::lock_guard lock(mutex_);
        changes_ = 0;
        bytes_ = 0;
        return std::exchange(items_, {});
    }

  private:
    static constexpr std::size_t kMostChanges = 256;
    static constexpr std::size_t kMostBytes = 64 * 1024; // of them all

    void dropOldest() {
        const auto oldest = std::ranges::find(items_, Kind::Changed, &Item::kind);
        bytes_ -= oldest->text.size();
        items_.erase(oldest);
        --changes_;
    }

    std::mutex mutex_;
    std::deque<Item> items_;
    std::size_t changes_ = 0;
    std::size_t bytes_ = 0;
};

} // namespace

/// A conversation as its links see it. Shared by the links, the thread and the calls that wait in the
/// mailbox.
struct DdeLinks::Feed {
    DdeItem item;
    Cancellation cancellation;
    News news;
    // The owner's thread alone:
    std::unique_ptr<platform::PeriodicTimer> deadline;
    std::vector<Link*> links;
    bool open = false;
    bool over = false;
    std::optional<std::string> text; // the last that came

    void end() {
        if (std::exchange(over, true)) return;
        deadline.reset();
        cancellation.cancel();
    }
    /// Calls an event of all links. It may destroy any of them.
    template <class Call>
    void tell(Call call) const;
};

class DdeLinks::Link : public platform::DdeLink {
  public:
    Link(std::shared_ptr<Feed> feed, platform::DdeEvents events)
        : feed_(std::move(feed)), events_(std::make_shared<platform::DdeEvents>(std::move(events))) {
        feed_->links.push_back(this);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() override {
        std::erase(feed_->links, this);
        if (feed_->links.empty()) feed_->end();
    }
    std::shared_ptr<const platform::DdeEvents> events() const { return events_; }

  private:
    std::shared_ptr<Feed> feed_;
    std::shared_ptr<const platform::DdeEvents> events_;
};

template <class Call>
void DdeLinks::Feed::tell(Call call) const {
    for (const Link* link : std::vector(links.begin(), links.end())) {
        if (std::ranges::find(links, link) == links.end()) continue;
        const auto events = link->events();
        call(*events);
    }
}

DdeLinks::DdeLinks(platform::Timers& timers) : timers_(timers) {}

DdeLinks::~DdeLinks() {
    waitForServers();
}

void DdeLinks::waitForServers() const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (*threads_ > 0 && std::chrono::steady_clock::now() < end) {
        // They may be asking our own windows, which answer in here.
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    }
}

std::unique_ptr<platform::DdeLink> DdeLinks::open(const std::string& topic, const std::string& item,
                                                  platform::DdeEvents events) {
    const auto bar = topic.find('|');
    const std::string server = bar == std::string::npos ? std::string() : topic.substr(bar + 1);
    std::shared_ptr<Feed> feed;
    try {
        feed = feedOf({wide(topic.substr(0, bar)), wide(server), wide(item)});
    } catch (const runtime::ObjectError&) {
        events.failed();
        return nullptr;
    }
    auto link = std::make_unique<Link>(feed, std::move(events));
    if (feed->open) {
        link->events()->opened();
        if (feed->text) link->events()->changed(*feed->text);
    }
    return link;
}

std::shared_ptr<DdeLinks::Feed> DdeLinks::feedOf(const DdeItem& item) {
    const auto gone = [](const auto& weak) {
        const auto feed = weak.lock();
        return !feed || feed->over;
    };
    std::erase_if(feeds_, gone);
    std::erase_if(waiting_, gone);
    for (const auto& weak : feeds_) {
        if (auto feed = weak.lock(); feed && feed->item.isSame(item)) return feed;
    }
    auto feed = std::make_shared<Feed>();
    feed->item = item;
    feed->deadline = timers_.create([weak = std::weak_ptr(feed)] {
        const auto late = weak.lock();
        late->end();
        late->tell([](const platform::DdeEvents& events) { events.failed(); });
    });
    feed->deadline->start(kDeadline);
    feeds_.push_back(feed);
    waiting_.push_back(feed);
    startNext();
    return feed;
}

void DdeLinks::startNext() {
    while (!waiting_.empty() && searches_ < kMostSearches && *threads_ < kMostThreads) {
        const auto feed = waiting_.front().lock();
        waiting_.pop_front();
        if (!feed || feed->over) continue;
        ++searches_;
        ++*threads_;
        try {
            std::thread([feed, threads = threads_, slot = mailbox_.slot(), this] {
                run(feed, slot, [this] {
                    --searches_;
                    startNext();
                });
                --*threads;
                slot.post([this] { startNext(); });
            }).detach();
        } catch (const std::system_error&) {
            // No thread left: the deadline says so.
            --searches_;
            --*threads_;
        }
    }
}

/// The life of a feed's thread. `searched` is called on the owner's thread.
void DdeLinks::run(const std::shared_ptr<Feed>& feed, const Mailbox::Slot& slot,
                   const Mailbox::Call& searched) {
    bool searching = true;
    const auto say = [&](News::Kind kind, std::string text = {}) {
        if (std::exchange(searching, false)) slot.post(searched);
        if (feed->news.add(kind, std::move(text))) slot.post([feed] { deliver(feed); });
    };
    const DdeListener listener{
        .opened = [&] { say(News::Kind::Opened); },
        .changed = [&](std::string text) { say(News::Kind::Changed, std::move(text)); },
        .closed = [&] { say(News::Kind::Closed); },
        .failed = [&] { say(News::Kind::Failed); }};
    converse(feed->item, listener, feed->cancellation);
    // One that was given up says nothing.
    if (searching) slot.post(searched);
}

/// On the owner's thread.
void DdeLinks::deliver(const std::shared_ptr<Feed>& feed) {
    for (const News::Item& item : feed->news.take()) {
        if (feed->over) return;
        switch (item.kind) {
        case News::Kind::Opened:
            feed->deadline.reset();
            feed->open = true;
            feed->tell([](const platform::DdeEvents& events) { events.opened(); });
            break;
        case News::Kind::Changed:
            feed->text = item.text;
            feed->tell([&item](const platform::DdeEvents& events) { events.changed(item.text); });
            break;
        case News::Kind::Closed:
            feed->end();
            feed->tell([](const platform::DdeEvents& events) { events.closed(); });
            break;
        case News::Kind::Failed:
            feed->end();
            feed->tell([](const platform::DdeEvents& events) { events.failed(); });
            break;
        }
    }
}

} // namespace windows_ports
