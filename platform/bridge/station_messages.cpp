#include "platform/bridge/station_messages.h"

#include <limits>
#include <optional>
#include <utility>

namespace bridge_ports {

namespace {

/// The first identifier of registered messages on Windows.
constexpr long kFirstMessage = 0xC000;
/// Our own handles count down from here: far from any frequency and from the Windows handles, which have 32
/// significant bits.
constexpr long kFirstOwnWindow = std::numeric_limits<long>::max();
/// Stands for the previous procedure of every window: there is no real procedure behind a hook.
constexpr long kNoProcedure = 1;
/// Milliseconds without a findWindow call after which a window is no longer watched.
constexpr std::chrono::seconds kWatchLimit{10};

template <class Integer>
std::optional<Integer> parse(const std::string& text) {
    const auto number = bridge::parseNumber(text);
    if (!number || !std::in_range<Integer>(*number)) return std::nullopt;
    return static_cast<Integer>(*number);
}

/// Null if there is no such window.
const std::string* nameOf(const std::map<std::string, long>& identifiers, long identifier) {
    for (const auto& [name, known] : identifiers)
        if (known == identifier) return &name;
    return nullptr;
}

} // namespace

StationMessages::StationMessages(Connection& connection, platform::Timers& timers)
    : connection_(connection), unasked_(timers.create([this] { stopWatching(); })) {
    connection_.attach(*this);
}

StationMessages::~StationMessages() {
    connection_.detach(*this);
}

long StationMessages::registerMessage(const std::string& name) {
    const auto [entry, added] = messages_.emplace(name, kFirstMessage + static_cast<long>(messages_.size()));
    if (added) connection_.say({"register", name});
    return entry->second;
}

long StationMessages::findWindow(const std::string& title) {
    unasked_->start(kWatchLimit);
    const auto [entry, added] = watches_.try_emplace(title);
    if (added) {
        connection_.say({"watch", title});
        connection_.ask();
    }
    Watch& watch = entry->second;
    return std::exchange(watch.gap, false) ? 0 : watch.window;
}

void StationMessages::stopWatching() {
    unasked_->stop();
    for (const auto& [title, watch] : std::exchange(watches_, {}))
        connection_.say({"unwatch", title});
}

void StationMessages::post(long window, long message, long wParam, long lParam) {
    const std::string* const name = nameOf(messages_, message);
    if (name == nullptr) return;
    const std::string* const own = nameOf(ownWindows_, lParam);
    connection_.say({"post", std::to_string(window), *name, std::to_string(wParam),
                     own == nullptr ? std::to_string(lParam) : "@" + *own});
}

long StationMessages::hook(long window, Receiver receiver) {
    const std::string* const form = nameOf(ownWindows_, window);
    const bool first = receivers_.insert_or_assign(window, std::move(receiver)).second;
    if (form != nullptr && first) connection_.say({"listen", *form});
    connection_.ask();
    return kNoProcedure;
}

void StationMessages::unhook(long window, long /*previousProcedure*/) {
    const std::string* const form = nameOf(ownWindows_, window);
    if (receivers_.erase(window) > 0 && form != nullptr) connection_.say({"unlisten", *form});
}

long StationMessages::ownWindow(const std::string& form) {
    return ownWindows_.emplace(form, kFirstOwnWindow - static_cast<long>(ownWindows_.size())).first->second;
}

bool StationMessages::wantsBridge() const {
    return !receivers_.empty() || !watches_.empty();
}

void StationMessages::bridgeConnected() {
    // Sent before the windows: a post to a window uses these names.
    for (const auto& [name, message] : messages_)
        connection_.say({"register", name});
    for (const auto& [form, window] : ownWindows_)
        if (receivers_.contains(window)) connection_.say({"listen", form});
    for (const auto& [title, watch] : watches_)
        connection_.say({"watch", title});
}

void StationMessages::bridgeLost() {
    for (auto& [title, watch] : watches_)
        if (std::exchange(watch.window, 0) > 0) watch.gap = true;
}

bool StationMessages::bridgeSaid(const std::vector<std::string>& fields) {
    if (fields.front() == "window" && fields.size() == 3) return windowChanged(fields[1], fields[2]);
    if (fields.front() == "message" && fields.size() == 5) return messageCame(fields);
    return false;
}

bool StationMessages::windowChanged(const std::string& title, const std::string& handle) {
    const auto window = parse<long>(handle);
    if (!window || *window < 0) return false;
    const auto found = watches_.find(title);
    // The watch of this title ended while the bridge's line was on its way.
    if (found == watches_.end()) return true;
    Watch& watch = found->second;
    if (watch.window > 0 && *window != watch.window) watch.gap = true;
    watch.window = *window;
    return true;
}

bool StationMessages::messageCame(const std::vector<std::string>& fields) {
    const auto wParam = parse<long>(fields[3]);
    const auto lParam = parse<long>(fields[4]);
    const auto message = messages_.find(fields[2]);
    if (!wParam || !lParam || message == messages_.end()) return false;
    const auto form = ownWindows_.find(fields[1]);
    if (form == ownWindows_.end()) return false;
    const auto hooked = receivers_.find(form->second);
    // The form was unhooked while the message was on its way.
    if (hooked == receivers_.end()) return true;
    const Receiver receiver = hooked->second; // the receiver may unhook the form
    receiver(message->second, *wParam, *lParam);
    return true;
}

} // namespace bridge_ports
