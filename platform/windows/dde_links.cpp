#include "platform/windows/dde_links.h"

#include "platform/windows/dde_conversation.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace windows_ports {

namespace {

constexpr int kDeadline = 1000; // milliseconds in which a link is open or has failed

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
        if (kind == Kind::Changed && changes_ == kMostChanges) {
            // The owner does not keep up: old values are of no use to it.
            const auto oldest = std::find_if(items_.begin(), items_.end(),
                                             [](const Item& item) { return item.kind == Kind::Changed; });
            items_.erase(oldest);
            --changes_;
        }
        items_.push_back({kind, std::move(text)});
        if (kind == Kind::Changed) ++changes_;
        return items_.size() == 1;
    }

    std::deque<Item> take() {
        const std::lock_guard lock(mutex_);
        changes_ = 0;
        return std::exchange(items_, {});
    }

  private:
    static constexpr std::size_t kMostChanges = 256;

    std::mutex mutex_;
    std::deque<Item> items_;
    std::size_t changes_ = 0;
};

} // namespace

/// Shared by a link, its thread and the calls that wait in the mailbox.
struct DdeLinks::Shared {
    DdeItem item;
    Cancellation cancellation;
    News news;
    // The owner's thread alone:
    platform::DdeEvents events;
    std::unique_ptr<platform::PeriodicTimer> deadline;
    bool over = false;

    void end() {
        if (std::exchange(over, true)) return;
        deadline.reset();
        cancellation.cancel();
    }
};

class DdeLinks::Link : public platform::DdeLink {
  public:
    explicit Link(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() override { shared_->end(); }

  private:
    std::shared_ptr<Shared> shared_;
};

DdeLinks::DdeLinks(platform::Timers& timers) : timers_(timers) {}

DdeLinks::~DdeLinks() {
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
    const auto link = std::make_shared<Shared>();
    const auto bar = topic.find('|');
    link->item.application = wide(topic.substr(0, bar));
    if (bar != std::string::npos) link->item.topic = wide(topic.substr(bar + 1));
    link->item.item = wide(item);
    try {
        link->deadline = timers_.create([link = link.get()] {
            const auto failed = link->events.failed;
            link->end();
            failed();
        });
    } catch (const runtime::ObjectError&) {
        events.failed();
        return nullptr;
    }
    link->events = std::move(events);
    link->deadline->start(kDeadline);
    std::erase_if(waiting_, [](const auto& other) {
        const auto waits = other.lock();
        return !waits || waits->over;
    });
    waiting_.push_back(link);
    startNext();
    return std::make_unique<Link>(link);
}

void DdeLinks::startNext() {
    while (!waiting_.empty() && searches_ < kMostSearches) {
        const auto link = waiting_.front().lock();
        waiting_.pop_front();
        if (!link || link->over) continue;
        ++searches_;
        ++*threads_;
        try {
            std::thread([link, threads = threads_, slot = mailbox_.slot(), this] {
                run(link, slot, [this] {
                    --searches_;
                    startNext();
                });
                --*threads;
            }).detach();
        } catch (const std::system_error&) {
            // No thread left: the deadline says so.
            --searches_;
            --*threads_;
        }
    }
}

/// The life of a link's thread. `searched` is called on the owner's thread.
void DdeLinks::run(const std::shared_ptr<Shared>& link, const Mailbox::Slot& slot,
                   const Mailbox::Call& searched) {
    bool searching = true;
    const auto say = [&](News::Kind kind, std::string text = {}) {
        if (std::exchange(searching, false)) slot.post(searched);
        if (link->news.add(kind, std::move(text))) slot.post([link] { tell(link); });
    };
    const DdeListener listener{
        .opened = [&] { say(News::Kind::Opened); },
        .changed = [&](std::string text) { say(News::Kind::Changed, std::move(text)); },
        .closed = [&] { say(News::Kind::Closed); },
        .failed = [&] { say(News::Kind::Failed); }};
    converse(link->item, listener, link->cancellation);
    // One that was given up says nothing.
    if (searching) slot.post(searched);
}

/// On the owner's thread. An event may destroy the link.
void DdeLinks::tell(const std::shared_ptr<Shared>& link) {
    for (const News::Item& item : link->news.take()) {
        if (link->over) return;
        switch (item.kind) {
        case News::Kind::Opened:
            link->deadline.reset();
            link->events.opened();
            break;
        case News::Kind::Changed:
            link->events.changed(item.text);
            break;
        case News::Kind::Closed:
            link->end();
            link->events.closed();
            break;
        case News::Kind::Failed:
            link->end();
            link->events.failed();
            break;
        }
    }
}

} // namespace windows_ports
