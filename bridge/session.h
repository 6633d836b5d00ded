#pragma once

#include "bridge/allowance.h"
#include "bridge/link_turns.h"
#include "bridge/protocol.h"
#include "bridge/registered_messages.h"
#include "platform/dde_links.h"
#include "platform/station_messages.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

/// The interfaces that sessions use.
struct Outside {
    platform::DdeLinks& links;
    platform::StationMessages& station;
    RegisteredMessages& messages;
    LinkTurns& turns;
};

/// The conversation with one client: turns its commands into links, windows and messages, and their events
/// into lines. Destroying the session ends them all.
class Session {
  public:
    struct Events {
        /// One line, with its line feed.
        std::function<void(const std::string& line)> send;
        /// Called with a line for the log, printable text.
        std::function<void(const std::string& text)> log;
    };

    static constexpr std::size_t kMostLinks = 64;
    static constexpr std::size_t kMostWindows = 16;
    static constexpr std::size_t kMostMessages = 16;
    static constexpr std::size_t kMostTitles = 16;
    static constexpr std::size_t kLongestName = 255; // bytes; the system takes no longer names
    /// Links, messages, windows, titles and posts that a client may ask for in kShareTime.
    static constexpr int kMostRequests = 200;
    static constexpr int kMostLinkRequests = 50; // links among them; each costs desktop time
    static constexpr int kLinkDeadline = 1000;   // milliseconds in which a link is open or has failed
    static constexpr int kShareTime = 5000;      // milliseconds
    static constexpr int kMostLines = 2000;      // in a second; beyond it, the client is dropped
    static constexpr int kMostRefusals = 100;    // in a second; beyond it, the client is dropped
    static constexpr int kTick = 250;            // milliseconds

    /// Sends the greeting. `number` makes the names of its windows different from those of other sessions.
    Session(const Outside& outside, int number, const std::string& version, Events events);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    void receive(std::string_view bytes);
    /// Every kTick milliseconds: pings, silence, watched titles.
    void tick();

    /// Whether the client must be closed: it is silent, has another version, or sends too much. Nothing more
    /// is sent.
    bool over() const { return over_; }
    bool greeted() const { return greeted_; }
    std::size_t links() const { return links_.size(); }

  private:
    using Fields = std::vector<std::string>;
    /// Why a line is refused; empty if it is accepted.
    using Refusal = std::optional<std::string>;
    struct Word;
    struct Link {
        std::unique_ptr<platform::DdeLink> link; // null before its turn
        bool open = false;
        int age = 0; // milliseconds until it opened
    };
    struct Window {
        long handle;
        long previousProcedure;
    };

    static const Word* find(std::string_view name);
    void obey(const LineReader::Line& line);
    void greet(const Fields& fields);
    Refusal run(const Fields& fields);

    Refusal ping(const Fields& fields);
    Refusal pong(const Fields& fields);
    Refusal link(const Fields& fields);
    Refusal unlink(const Fields& fields);
    Refusal registerMessage(const Fields& fields);
    Refusal listen(const Fields& fields);
    Refusal unlisten(const Fields& fields);
    Refusal watch(const Fields& fields);
    Refusal unwatch(const Fields& fields);
    Refusal post(const Fields& fields);

    void search(int id, const std::string& topic, const std::string& item);
    void giveUpLate();
    platform::DdeEvents eventsOf(int id, const std::string& name);
    void end(int id);
    void arrived(const std::string& window, long message, long wParam, long lParam);
    void look(const std::string& title);
    long window(long long handle);

    void say(const std::vector<std::string_view>& fields);
    void refuse(const std::string& reason);
    void finish(const std::string& why);

    Outside outside_;
    int number_;
    Events events_;
    LineReader reader_;
    bool greeted_ = false;
    bool over_ = false;
    bool wrongBefore_ = false;
    int silence_ = 0;   // milliseconds
    int sincePing_ = 0; // milliseconds
    long pings_ = 0;
    Allowance lines_{kMostLines, 1000};
    Allowance refusals_{kMostRefusals, 1000};
    Allowance requests_{kMostRequests, kShareTime};
    Allowance linkRequests_{kMostLinkRequests, kShareTime};

    std::map<int, Link> links_;
    /// Links that have ended inside their own event; the next tick destroys them.
    std::vector<std::unique_ptr<platform::DdeLink>> ended_;
    std::map<std::string, long, std::less<>> messages_;
    std::map<std::string, Window, std::less<>> windows_;
    std::map<std::string, long> titles_; // and the handle last sent
};

/// Text from outside for a log: control characters become question marks.
std::string printable(std::string_view text);

} // namespace bridge
