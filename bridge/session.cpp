#include "bridge/session.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

namespace bridge {

namespace {

/// A line that cannot be obeyed, and why.
struct Refusal {
    std::string reason;
};

int idOf(const std::string& text) {
    const auto number = parseNumber(text);
    if (!number || *number < 1 || *number > std::numeric_limits<std::int32_t>::max())
        throw Refusal{"a link's number is 1 to 2147483647"};
    return static_cast<int>(*number);
}

long parameter(const std::string& text) {
    const auto number = parseNumber(text);
    if (!number || *number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max())
        throw Refusal{"a parameter is a number of 32 bits"};
    return static_cast<long>(*number);
}

/// Window handles have 32 bits that count, and are told without a sign.
std::string handleText(long handle) {
    return std::to_string(static_cast<std::uint32_t>(handle));
}

} // namespace

struct Session::Word {
    std::string_view name;
    std::size_t arguments;
    void (Session::*run)(const Fields&);
    bool costs = false; // the system's work, of which each client has its share
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
    for (const auto& [name, window] : windows_)
        outside_.station.unhook(window.handle, window.previousProcedure);
}

void Session::receive(std::string_view bytes) {
    silence_ = 0;
    reader_.feed(bytes);
    while (const auto line = reader_.next()) {
        if (over_) return;
        obey(*line);
    }
}

void Session::obey(const LineReader::Line& line) {
    const auto fields = line.tooLong ? std::nullopt : split(line.text);
    if (!greeted_) {
        greet(fields.value_or(Fields{}));
        return;
    }
    try {
        if (line.tooLong) throw Refusal{"the line is longer than " + std::to_string(kLongestLine) + " bytes"};
        if (!fields) throw Refusal{"unknown escape"};
        run(*fields);
    } catch (const Refusal& refusal) {
        refuse(refusal.reason);
    } catch (const runtime::ObjectError& error) {
        refuse(error.what());
    }
}

void Session::greet(const Fields& fields) {
    if (fields.size() == 4 && fields[0] == "hello" && fields[1] == std::to_string(kVersion)) {
        greeted_ = true;
        events_.log("is " + printable(fields[2]) + " " + printable(fields[3]));
        return;
    }
    const std::string version = std::to_string(kVersion);
    say({"error", "version " + version + " is spoken here; begin with: hello " + version + " NAME VERSION"});
    finish("did not begin with a greeting of version " + version);
}

void Session::run(const Fields& fields) {
    const Word* const word = find(fields[0]);
    if (!word) throw Refusal{"unknown word"};
    if (fields.size() != word->arguments + 1)
        throw Refusal{"this word takes " + std::to_string(word->arguments) + " fields"};
    if (std::ranges::any_of(fields, [](const auto& field) { return field.empty(); }))
        throw Refusal{"a field is empty"};
    if (std::ranges::any_of(fields, [](const auto& field) { return field.size() > kLongestName; }))
        throw Refusal{"a field is longer than " + std::to_string(kLongestName) + " bytes"};
    if (word->costs && ++requests_ > kMostRequests) throw Refusal{"too much at once; wait some seconds"};
    (this->*word->run)(fields);
}

void Session::ping(const Fields& fields) {
    say({"pong", fields[1]});
}

void Session::pong(const Fields& /*fields*/) {
    // That something came was all it had to say.
}

void Session::link(const Fields& fields) {
    const int id = idOf(fields[1]);
    if (links_.contains(id)) throw Refusal{"a link of this number is open"};
    if (links_.size() >= kMostLinks) throw Refusal{"too many links"};
    // The bar divides application and topic.
    if (fields[2].find('|') != std::string::npos) throw Refusal{"an application's name has no bar"};
    links_.emplace(id, nullptr); // for events that come during the call
    auto link = outside_.links.open(fields[2] + "|" + fields[3], fields[4],
                                    eventsOf(id, fields[2] + "|" + fields[3] + " " + fields[4]));
    if (const auto found = links_.find(id); found != links_.end()) found->second = std::move(link);
}

platform::DdeEvents Session::eventsOf(int id, const std::string& name) {
    const auto about = [this, text = "link to " + printable(name)](const char* what) {
        events_.log(text + what);
    };
    platform::DdeEvents events;
    events.opened = [this, id, about] {
        about(" opened");
        say({"opened", std::to_string(id)});
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
    ended_.push_back(std::move(found->second));
    links_.erase(found);
}

void Session::unlink(const Fields& fields) {
    // A link that the server closed at the same moment is gone already: no reason to complain.
    links_.erase(idOf(fields[1]));
}

void Session::registerMessage(const Fields& fields) {
    if (messages_.contains(fields[1])) return;
    if (messages_.size() >= kMostMessages) throw Refusal{"too many messages"};
    messages_[fields[1]] = outside_.messages.idOf(fields[1]);
}

void Session::listen(const Fields& fields) {
    const std::string& name = fields[1];
    if (windows_.contains(name)) return;
    if (windows_.size() >= kMostWindows) throw Refusal{"too many windows"};
    const long handle = outside_.station.ownWindow(std::to_string(number_) + "/" + name);
    const long previous = outside_.station.hook(handle, [this, name](long message, long wParam, long lParam) {
        arrived(name, message, wParam, lParam);
    });
    windows_.emplace(name, Window{handle, previous});
}

void Session::arrived(const std::string& window, long message, long wParam, long lParam) {
    const auto found =
        std::ranges::find_if(messages_, [message](const auto& known) { return known.second == message; });
    if (found == messages_.end()) return;
    say({"message", window, found->first, std::to_string(wParam), std::to_string(lParam)});
}

void Session::unlisten(const Fields& fields) {
    const auto found = windows_.find(fields[1]);
    if (found == windows_.end()) return;
    outside_.station.unhook(found->second.handle, found->second.previousProcedure);
    windows_.erase(found);
}

void Session::watch(const Fields& fields) {
    const std::string& title = fields[1];
    if (!titles_.contains(title) && titles_.size() >= kMostTitles) throw Refusal{"too many titles"};
    titles_[title] = outside_.station.findWindow(title);
    say({"window", title, handleText(titles_[title])});
}

void Session::unwatch(const Fields& fields) {
    titles_.erase(fields[1]);
}

void Session::look(const std::string& title) {
    const long handle = outside_.station.findWindow(title);
    if (handle == std::exchange(titles_[title], handle)) return;
    events_.log("window \"" + printable(title) + (handle == 0 ? "\" is gone" : "\" is there"));
    say({"window", title, handleText(handle)});
}

/// A stranger must not reach other programs' windows: only one that was pushed for a watched title will do,
/// and only while it still has that title.
long Session::window(long long handle) {
    const auto isIt = [handle](const auto& watched) {
        return watched.second != 0 && static_cast<std::uint32_t>(watched.second) == handle;
    };
    if (const auto found = std::ranges::find_if(titles_, isIt); found != titles_.end()) {
        look(found->first);
        if (isIt(*found)) return found->second;
    }
    throw Refusal{"not a window of a title that you watch"};
}

long Session::listeningWindow(const std::string& name) const {
    const auto found = windows_.find(name);
    if (found == windows_.end()) throw Refusal{"not a window that you listen on"};
    return found->second.handle;
}

void Session::post(const Fields& fields) {
    const auto handle = parseNumber(fields[1]);
    if (!handle) throw Refusal{"a window's handle is a number"};
    const auto message = messages_.find(fields[2]);
    if (message == messages_.end()) throw Refusal{"not a message that you registered"};
    const long wParam = parameter(fields[3]);
    const long lParam =
        fields[4].starts_with('@') ? listeningWindow(fields[4].substr(1)) : parameter(fields[4]);
    outside_.station.post(window(*handle), message->second, wParam, lParam);
}

void Session::tick() {
    ended_.clear();
    if (over_) return;
    silence_ += kTick;
    if (silence_ >= kSilenceLimit) {
        finish("was silent for " + std::to_string(kSilenceLimit / 1000) + " seconds");
        return;
    }
    sinceShare_ += kTick;
    if (sinceShare_ >= kShareTime) {
        sinceShare_ = 0;
        requests_ = 0;
    }
    sincePing_ += kTick;
    if (sincePing_ >= kPingInterval) {
        sincePing_ = 0;
        say({"ping", std::to_string(++pings_)});
    }
    for (const auto& [title, handle] : titles_)
        look(title);
}

void Session::say(const std::vector<std::string_view>& fields) {
    if (!over_) events_.send(join(fields));
}

void Session::refuse(const std::string& reason) {
    // One word in the log is enough: what a client sends must not fill it.
    if (!std::exchange(wrongBefore_, true)) events_.log("sent a wrong line: " + printable(reason));
    say({"error", reason});
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
