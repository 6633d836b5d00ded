#pragma once

#include "bridge/protocol.h"
#include "bridge/registered_messages.h"
#include "platform/dde_links.h"
#include "platform/station_messages.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

/// What sessions work on.
struct Outside {
    platform::DdeLinks& links;
    platform::StationMessages& station;
    RegisteredMessages& messages;
};

/// The conversation with one client: its words become links, windows and messages, and what these bring
/// becomes lines. Destroying it ends them all.
class Session {
  public:
    struct Events {
        /// One line, with its line feed.
        std::function<void(const std::string& line)> send;
        /// What a reader of the log wants to know; one line of printable text.
        std::function<void(const std::string& text)> log;
    };

    static constexpr std::size_t kMostLinks = 64;
    static constexpr std::size_t kMostWindows = 16;
    static constexpr std::size_t kMostMessages = 16;
    static constexpr std::size_t kMostTitles = 16;
    static constexpr std::size_t kLongestName = 255; // bytes; the system takes no longer names
    /// Links, messages, windows, titles and posts that a client may ask for in kShareTime.
    static constexpr int kMostRequests = 200;
    static constexpr int kShareTime = 5000; // milliseconds
    static constexpr int kTick = 250;       // milliseconds

    /// Sends the greeting. `number` tells its windows from those of all other sessions.
    Session(const Outside& outside, int number, const std::string& version, Events events);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    void receive(std::string_view bytes);
    /// Every kTick milliseconds: pings, silence, watched titles.
    void tick();

    /// The client is to be closed: it is silent or does not speak this version. Nothing is sent any more.
    bool over() const { return over_; }
    bool greeted() const { return greeted_; }
    std::size_t links() const { return links_.size(); }

  private:
    using Fields = std::vector<std::string>;
    struct Word;
    struct Window {
        long handle;
        long previousProcedure;
    };

    static const Word* find(std::string_view name);
    void obey(const LineReader::Line& line);
    void greet(const Fields& fields);
    void run(const Fields& fields);

    void ping(const Fields& fields);
    void pong(const Fields& fields);
    void link(const Fields& fields);
    void unlink(const Fields& fields);
    void registerMessage(const Fields& fields);
    void listen(const Fields& fields);
    void unlisten(const Fields& fields);
    void watch(const Fields& fields);
    void unwatch(const Fields& fields);
    void post(const Fields& fields);

    platform::DdeEvents eventsOf(int id, const std::string& name);
    void end(int id);
    void arrived(const std::string& window, long message, long wParam, long lParam);
    void look(const std::string& title);
    long window(long long handle);
    long listeningWindow(const std::string& name) const;

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
    int requests_ = 0;   // of its present share
    int sinceShare_ = 0; // milliseconds

    std::map<int, std::unique_ptr<platform::DdeLink>> links_;
    /// They are telling us something just now, and go with the next tick.
    std::vector<std::unique_ptr<platform::DdeLink>> ended_;
    std::map<std::string, long, std::less<>> messages_;
    std::map<std::string, Window, std::less<>> windows_;
    std::map<std::string, long> titles_; // and the handle that was pushed
};

/// Text from outside for a log: control characters become question marks.
std::string printable(std::string_view text);

} // namespace bridge
