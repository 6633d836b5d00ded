#include "platform/bridge/dde_links.h"

#include <algorithm>
#include <utility>

namespace bridge_ports {

namespace {

/// A link fails unless it is answered within 900 to 950 milliseconds: the first tick may be a short one.
constexpr std::chrono::milliseconds kDeadlineTick{50};
constexpr int kDeadlineTicks = 19;

} // namespace

/// The object that the owner of a link holds.
class DdeLinks::Handle : public platform::DdeLink {
  public:
    Handle(DdeLinks& owner, long long id) : owner_(owner), id_(id) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() override { owner_.end(id_); }

  private:
    DdeLinks& owner_;
    const long long id_;
};

DdeLinks::DdeLinks(Connection& connection, platform::Timers& timers)
    : connection_(connection), deadline_(timers.create([this] { lookAtDeadlines(); })),
      ends_(timers.create([this] { tellEnds(); })) {
    connection_.attach(*this);
}

DdeLinks::~DdeLinks() {
    connection_.detach(*this);
}

std::unique_ptr<platform::DdeLink> DdeLinks::open(const std::string& topic, const std::string& item,
                                                  platform::DdeEvents events) {
    const bool none =
        std::ranges::none_of(links_, [](const auto& link) { return link.second.state == State::Asking; });
    if (none) deadline_->start(kDeadlineTick);
    const long long id = ++lastId_;
    const std::size_t bar = std::min(topic.find('|'), topic.size());
    Link& link = links_[id];
    link.application = topic.substr(0, bar);
    link.topic = topic.substr(std::min(bar + 1, topic.size()));
    link.item = item;
    link.events = std::make_shared<const platform::DdeEvents>(std::move(events));
    link.ticksLeft = kDeadlineTicks;
    if (connection_.connected()) {
        ask(id, link);
    } else {
        connection_.ask();
    }
    return std::make_unique<Handle>(*this, id);
}

void DdeLinks::ask(long long id, Link& link) {
    if (!connection_.say({"link", std::to_string(id), link.application, link.topic, link.item})) {
        finish(link, State::Failing);
    }
}

void DdeLinks::unlink(long long id) {
    connection_.say({"unlink", std::to_string(id)});
}

void DdeLinks::end(long long id) {
    const auto found = links_.find(id);
    if (found == links_.end()) return;
    const bool known = live(found->second);
    links_.erase(found);
    if (known) unlink(id);
}

/// Whether the link still exists.
bool DdeLinks::live(const Link& link) {
    return link.state == State::Asking || link.state == State::Open;
}

bool DdeLinks::wantsBridge() const {
    return std::ranges::any_of(links_, [](const auto& link) { return live(link.second); });
}

void DdeLinks::bridgeConnected() {
    for (auto& [id, link] : links_)
        if (link.state == State::Asking) ask(id, link);
}

void DdeLinks::bridgeLost() {
    for (auto& [id, link] : links_) {
        if (link.state == State::Asking) finish(link, State::Failing);
        if (link.state == State::Open) finish(link, State::Closing);
    }
}

bool DdeLinks::bridgeSaid(const std::vector<std::string>& fields) {
    if (fields.size() < 2) return false;
    const std::string& word = fields.front();
    const auto id = bridge::parseNumber(fields[1]);
    const bool known = (word == "opened" && fields.size() == 2) || (word == "closed" && fields.size() == 2) ||
                       (word == "changed" && fields.size() == 3) || (word == "failed" && fields.size() >= 2);
    if (!id || !known) return false;
    const auto found = links_.find(*id);
    // The link was ended here while the bridge's line was on its way.
    if (found == links_.end()) return *id >= 1 && *id <= lastId_;
    Link& link = found->second;
    const auto events = link.events; // the events may destroy the link
    if (word == "opened" && link.state == State::Asking) {
        link.state = State::Open;
        events->opened();
    } else if (word == "changed" && link.state == State::Open) {
        events->changed(fields[2]);
    } else if ((word == "closed" || word == "failed") && live(link)) {
        // "closed" and "failed" mean the same here: an open link or an attempt has ended.
        const bool wasOpen = link.state == State::Open;
        links_.erase(found);
        if (wasOpen) {
            events->closed();
        } else {
            events->failed();
        }
    } else {
        return false;
    }
    return true;
}

/// Tells the owner later, by the timer: the caller is not prepared for what the owner may do.
void DdeLinks::finish(Link& link, State state) {
    link.state = state;
    ends_->start(std::chrono::milliseconds(1));
}

void DdeLinks::lookAtDeadlines() {
    bool asking = false;
    for (auto& [id, link] : links_) {
        if (link.state != State::Asking) continue;
        if (--link.ticksLeft > 0) {
            asking = true;
        } else {
            unlink(id);
            finish(link, State::Failing);
        }
    }
    if (!asking) deadline_->stop();
}

/// The timer may call this again while a callback has a box open.
void DdeLinks::tellEnds() {
    const auto over = [](const auto& link) { return !live(link.second); };
    for (auto next = std::ranges::find_if(links_, over); next != links_.end();
         next = std::ranges::find_if(links_, over)) {
        const Link link = std::move(next->second);
        links_.erase(next);
        if (link.state == State::Failing) {
            link.events->failed();
        } else {
            link.events->closed();
        }
    }
    ends_->stop();
}

} // namespace bridge_ports
