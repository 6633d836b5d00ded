#include "bridge/session.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

namespace bridge {

namespace {

constexpr const char* kTooMuch = "too much at once; wait some seconds";
constexpr const char* kNoLinkNumber = "a link's number is 1 to 2147483647";

/// A number of 32 bits.
std::optional<long> parameter(const std::string& text) {
    const auto number = parseNumber(text);
    if (!number || *number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<long>(*number);
}

std::optional<int> idOf(const std::string& text) {
    const auto number = parameter(text);
    if (!number || *number < 1) return std::nullopt;
    return static_cast<int>(*number);
}

/// Window handles have 32 significant bits, and are sent without a sign.
std::string handleText(long handle) {
    return std::to_string(static_cast<std::uint32_t>(handle));
}

} // namespace

struct Session::Word {
    std::string_view name;
    std::size_t arguments;
    Refusal (Session::*run)(const Fields&);
    bool costs = false; // the command costs the system time, so it counts towards the client's limit
};

const Session::Word* Session::find(std::string_view name) {
    static constexpr std::array kWords = {
        Word{"ping", 1, &Session::ping},
        Word{"pong", 1, &Session::pong},
        Word{"link", 4, &Session::link, true},
        Word{"unlink", 1, &Session::unlink},
        Word{"register", 1, &Session::registerMessage, true},
        Word{"listen", 1, &Session::listen, true},
        Word{"unlisten", 1, &Session::unlisten},
        Word{"watch", 1, &Session::watch, true},
        Word{"unwatch", 1, &Session::unwatch},
        Word{"post", 4, &Session::post, true},
    };
    const auto* const found = std::ranges::find(kWords, name, &Word::name);
    return found == kWords.end() ? nullptr : found;
}

Session::Session(const Outside& outside, int number, const std::string& version, Events events)
    : outside_(outside), number_(number), events_(std::move(events)) {
    say({"hello", std::to_string(kVersion), "twinstep-bridge", version});
}

Session::~Session() {
    outside_.turns.leave(number_);
    for (const auto& [name, window] : windows_)
        outside_.station.unhook(window.handle, window.previousProcedure);
}

void Session::receive(std::string_view bytes) {
    // A client must greet in time, whatever else it sends: it occupies a place.
    if (greeted_) silence_ = 0;
    reader_.feed(bytes);
    while (const auto line = reader_.next()) {
        if (over_) return;
        if (lines_.take()) {
            obey(*line);
        } else {
            finish("is dropped: it sends too many lines");
        }
    }
}

void Session::obey(const LineReader::Line& line) {
    const auto fields = line.tooLong ? std::nullopt : split(line.text);
    if (!greeted_) {
        greet(fields.value_or(Fields{}));
        return;
    }
    if (line.tooLong) {
        refuse("the line is longer than " + std::to_string(kLongestLine) + " bytes");
    } else if (!fields) {
        refuse("unknown escape");
    } else if (const Refusal refusal = run(*fields)) {
        refuse(*refusal);
    }
}

void Session::greet(const Fields& fields) {
    if (fields.size() == 4 && fields[0] == "hello" && fields[1] == std::to_string(kVersion)) {
        greeted_ = true;
        silence_ = 0;
        events_.log("is " + printable(fields[2]) + " " + printable(fields[3]));
        return;
    }
    const std::string version = std::to_string(kVersion);
    say({"error", "version " + version + " is spoken here; begin with: hello " + version + " NAME VERSION"});
    finish("did not begin with a greeting of version " + version);
}

/// Throws nothing for a client's mistake: a client can make many mistakes, and each exception costs time.
Session::Refusal Session::run(const Fields& fields) {
    const Word* const word = find(fields[0]);
    if (!word) return "unknown word";
    if (fields.size() != word->arguments + 1)
        return "this word takes " + std::to_string(word->arguments) + " fields";
    if (std::ranges::any_of(fields, [](const auto& field) { return field.empty(); }))
        return "a field is empty";
    if (std::ranges::any_of(fields, [](const auto& field) { return field.size() > kLongestName; }))
        return "a field is longer than " + std::to_string(kLongestName) + " bytes";
    if (word->costs && !requests_.take()) return kTooMuch;
    try {
        return (this->*word->run)(fields);
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
}

Session::Refusal Session::ping(const Fields& fields) {
    say({"pong", fields[1]});
    return {};
}

Session::Refusal Session::pong(const Fields& /*fields*/) {
    return {}; // nothing to do: any line shows that the client is alive
}

Session::Refusal Session::link(const Fields& fields) {
    const auto id = idOf(fields[1]);
    if (!id) return kNoLinkNumber;
    if (links_.contains(*id)) return "a link of this number is open";
    if (links_.size() >= kMostLinks) return "too many links";
    // The bar divides application and topic.
    if (fields[2].find('|') != std::string::npos) return "an application's name has no bar";
    if (!linkRequests_.take()) return kTooMuch;
    links_.emplace(*id, Link{});
    outside_.turns.ask(number_, *id, [this, id = *id, topic = fields[2] + "|" + fields[3], item = fields[4]] {
        search(id, topic, item);
    });
    return {};
}

void Session::search(int id, const std::string& topic, const std::string& item) {
    auto link = outside_.links.open(topic, item, eventsOf(id, topic + " " + item));
    // It may have failed during the call.
    if (const auto found = links_.find(id); found != links_.end()) found->second.link = std::move(link);
}

platform::DdeEvents Session::eventsOf(int id, const std::string& name) {
    const auto about = [this, text = "link to " + printable(name)](const char* what) {
        events_.log(text + what);
    };
    platform::DdeEvents events;
    events.opened = [this, id, about] {
        about(" opened");
        if (const auto found = links_.find(id); found != links_.end()) found->second.open = true;
        say({"opened", std::to_string(id)});
        outside_.turns.done(number_, id);
    };
    events.failed = [this, id, about] {
        about(" failed");
        say({"failed", std::to_string(id), "no server answered"});
        end(id);
    };
    events.closed = [this, id, about] {
        about(" closed by the server");
        say({"closed", std::to_string(id)});
        end(id);
    };
    events.changed = [this, id, about](const std::string& text) {
        // The link may have ended, and wait for the next tick to go.
        if (!links_.contains(id)) return;
        if (fits(join({"changed", std::to_string(id), text}))) {
            say({"changed", std::to_string(id), text});
            return;
        }
        about(" brought a text that is too long");
        say({"failed", std::to_string(id), "the item's text is too long for a line"});
        end(id);
    };
    return events;
}

void Session::end(int id) {
    const auto found = links_.find(id);
    if (found == links_.end()) return;
    ended_.push_back(std::move(found->second.link));
    links_.erase(found);
    outside_.turns.done(number_, id);
}

Session::Refusal Session::unlink(const Fields& fields) {
    const auto id = idOf(fields[1]);
    if (!id) return kNoLinkNumber;
    // The server may have closed the link at the same moment: not an error.
    links_.erase(*id);
    outside_.turns.done(number_, *id);
    return {};
}

Session::Refusal Session::registerMessage(const Fields& fields) {
    if (messages_.contains(fields[1])) return {};
    if (messages_.size() >= kMostMessages) return "too many messages";
    messages_[fields[1]] = outside_.messages.idOf(fields[1]);
    return {};
}

Session::Refusal Session::listen(const Fields& fields) {
    const std::string& name = fields[1];
    if (windows_.contains(name)) return {};
    if (windows_.size() >= kMostWindows) return "too many windows";
    const long handle = outside_.station.ownWindow(std::to_string(number_) + "/" + name);
    const long previous = outside_.station.hook(handle, [this, name](long message, long wParam, long lParam) {
        arrived(name, message, wParam, lParam);
    });
    windows_.emplace(name, Window{handle, previous});
    return {};
}

void Session::arrived(const std::string& window, long message, long wParam, long lParam) {
    const auto found =
        std::ranges::find_if(messages_, [message](const auto& known) { return known.second == message; });
    if (found == messages_.end()) return;
    say({"message", window, found->first, std::to_string(wParam), std::to_string(lParam)});
}

Session::Refusal Session::unlisten(const Fields& fields) {
    const auto found = windows_.find(fields[1]);
    if (found == windows_.end()) return {};
    outside_.station.unhook(found->second.handle, found->second.previousProcedure);
    windows_.erase(found);
    return {};
}

Session::Refusal Session::watch(const Fields& fields) {
    const std::string& title = fields[1];
    if (!titles_.contains(title) && titles_.size() >= kMostTitles) return "too many titles";
    titles_[title] = outside_.station.findWindow(title);
    say({"window", title, handleText(titles_[title])});
    return {};
}

Session::Refusal Session::unwatch(const Fields& fields) {
    titles_.erase(fields[1]);
    return {};
}

void Session::look(const std::string& title) {
    const long handle = outside_.station.findWindow(title);
    if (handle == std::exchange(titles_[title], handle)) return;
    events_.log("window \"" + printable(title) + (handle == 0 ? "\" is gone" : "\" is there"));
    say({"window", title, handleText(handle)});
}

/// A client must not reach other programs' windows. Only a handle that was sent for a watched title is valid,
/// and only while the window still has that title. 0: invalid.
long Session::window(long long handle) {
    const auto isIt = [handle](const auto& watched) {
        return watched.second != 0 && static_cast<std::uint32_t>(watched.second) == handle;
    };
    const auto found = std::ranges::find_if(titles_, isIt);
    if (found == titles_.end()) return 0;
    look(found->first);
    return isIt(*found) ? found->second : 0;
}

Session::Refusal Session::post(const Fields& fields) {
    constexpr const char* kNoParameter = "a parameter is a number of 32 bits";
    const auto handle = parseNumber(fields[1]);
    if (!handle) return "a window's handle is a number";
    const auto message = messages_.find(fields[2]);
    if (message == messages_.end()) return "not a message that you registered";
    const auto wParam = parameter(fields[3]);
    if (!wParam) return kNoParameter;
    std::optional<long> lParam;
    if (fields[4].starts_with('@')) {
        const auto own = windows_.find(fields[4].substr(1));
        if (own == windows_.end()) return "not a window that you listen on";
        lParam = own->second.handle;
    } else if (lParam = parameter(fields[4]); !lParam) {
        return kNoParameter;
    }
    const long target = window(*handle);
    if (target == 0) return "not a window of a title that you watch";
    outside_.station.post(target, message->second, *wParam, *lParam);
    return {};
}

void Session::tick() {
    ended_.clear();
    if (over_) return;
    silence_ += kTick;
    if (silence_ >= kSilenceLimit) {
        finish((greeted_ ? "was silent for " : "did not greet in ") + std::to_string(kSilenceLimit / 1000) +
               " seconds");
        return;
    }
    lines_.pass(kTick);
    refusals_.pass(kTick);
    requests_.pass(kTick);
    linkRequests_.pass(kTick);
    giveUpLate();
    sincePing_ += kTick;
    if (sincePing_ >= kPingInterval) {
        sincePing_ = 0;
        say({"ping", std::to_string(++pings_)});
    }
    for (const auto& [title, handle] : titles_)
        look(title);
}

/// Links whose turn has not come or has come too late.
void Session::giveUpLate() {
    std::vector<int> late;
    for (auto& [id, link] : links_) {
        if (!link.open && (link.age += kTick) > kLinkDeadline) late.push_back(id);
    }
    for (const int id : late) {
        say({"failed", std::to_string(id), "other links were searched for"});
        links_.erase(id);
        outside_.turns.done(number_, id);
    }
}

void Session::say(const std::vector<std::string_view>& fields) {
    if (!over_) events_.send(join(fields));
}

void Session::refuse(const std::string& reason) {
    // One entry in the log is enough: a client must not be able to fill the log.
    if (!std::exchange(wrongBefore_, true)) events_.log("sent a wrong line: " + printable(reason));
    say({"error", reason});
    if (!refusals_.take()) finish("is dropped: it sends too many wrong lines");
}

void Session::finish(const std::string& why) {
    events_.log(why);
    over_ = true;
}

std::string printable(std::string_view text) {
    std::string result(text);
    std::ranges::replace_if(
        result,
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7f'; },
        '?');
    return result;
}

} // namespace bridge
