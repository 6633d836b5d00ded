// A bridge that says anything, while links come and go and time passes.

#include "fuzz/script.h"
#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/tcp_clients.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

using fuzz::require;

/// What single bytes stand for, as the protocol's words would take a fuzzer long to find.
constexpr unsigned kFirstWord = 0xE0;
constexpr std::array kWords = {"\nopened ",
                               "\nchanged ",
                               "\nclosed ",
                               "\nfailed ",
                               "\nwindow Logger32 ",
                               "\nmessage Form1 Logger32 ",
                               "\nping ",
                               "\nhello 1 ",
                               "\nhello 2 ",
                               "\nerror ",
                               "1",
                               "2",
                               "3",
                               " ",
                               "\n",
                               " 100 14200000"};
constexpr unsigned kAction = 0xF0;
static_assert(kFirstWord + kWords.size() == kAction);

/// What the owner of a link relies on.
class WatchedLink {
  public:
    void open(bridge_ports::DdeLinks& links, bool leaveInside) {
        end();
        state_ = State::Asked;
        platform::DdeEvents events;
        events.opened = [this, leaveInside] {
            require(state_ == State::Asked);
            state_ = State::Open;
            if (leaveInside) end();
        };
        events.failed = [this] {
            require(state_ == State::Asked);
            state_ = State::Over;
        };
        events.changed = [this, leaveInside](const std::string& text) {
            require(state_ == State::Open && text.size() < bridge::kLongestLine);
            if (leaveInside) end();
        };
        events.closed = [this, leaveInside] {
            require(state_ == State::Open);
            state_ = State::Over;
            if (leaveInside) end();
        };
        link_ = links.open("App|Topic", "Item", std::move(events));
    }
    void end() {
        state_ = State::Over;
        link_.reset();
    }
    bool asked() const { return state_ == State::Asked; }

  private:
    enum class State { Asked, Open, Over };
    State state_ = State::Over;
    std::unique_ptr<platform::DdeLink> link_;
};

struct Desk {
    simulated::Clock clock;
    simulated::TcpClients tcp;
    bridge_ports::Connection connection{tcp, clock, "1", {}};
    bridge_ports::DdeLinks links{connection, clock};
    bridge_ports::StationMessages station{connection, clock};
    std::array<WatchedLink, 3> watched;
    const long message = station.registerMessage("Logger32");
    const long form = station.ownWindow("Form1");
    bool hooked = false;

    void act(unsigned action) {
        WatchedLink& link = watched.at(action % watched.size());
        switch (action % 16) {
        case 0:
        case 1:
        case 2:
            link.open(links, action >= 128);
            break;
        case 3:
            link.end();
            break;
        case 4:
            hook();
            break;
        case 5:
            unhook();
            break;
        case 6:
            look();
            break;
        case 7:
            tcp.drop();
            break;
        case 8:
            tcp.answer();
            break;
        case 9:
            clock.advance(1100);
            for (const WatchedLink& each : watched)
                require(!each.asked());
            break;
        case 10:
            tcp.stopReading(action >= 128);
            break;
        case 11:
            connection.setAddress({"other", action >= 128 ? 1 : 2});
            break;
        case 12:
            greet();
            break;
        default:
            clock.advance(static_cast<int>(action));
        }
    }
    void hook() {
        station.hook(form, [this](long number, long, long) {
            require(hooked && number == message);
            if (look()) unhook();
        });
        hooked = true;
    }
    void unhook() {
        station.unhook(form, 1);
        hooked = false;
    }
    bool look() {
        const long window = station.findWindow("Logger32");
        require(window >= 0 && (window == 0 || connection.connected()));
        if (window > 0) station.post(window, message, 3, form);
        return window > 0;
    }
    void greet() {
        tcp.answer();
        tcp.send("\nhello 1 twinstep-bridge 1\n");
    }
};

/// Every line that the bridge gets is one of the protocol's.
void checkSent(const std::string& bytes) {
    bridge::LineReader reader;
    reader.feed(bytes);
    while (const auto line = reader.next())
        require(!line->tooLong && bridge::split(line->text));
}

} // namespace

/// A byte from kAction on is followed by an action; what stands between two actions is what the bridge says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Desk desk;
    desk.tcp.listen(bridge::kPort);
    desk.tcp.listen(1);
    desk.watched.front().open(desk.links, false);
    desk.hook();
    desk.look();
    desk.greet();
    std::string said;
    for (std::size_t at = 0; at < size; ++at) {
        if (data[at] < kFirstWord) {
            said += static_cast<char>(data[at]);
        } else if (data[at] < kAction) {
            said += kWords.at(data[at] - kFirstWord);
        } else if (++at < size) {
            desk.tcp.send(std::exchange(said, {}));
            desk.act(data[at]);
        }
    }
    desk.tcp.send(said);
    desk.clock.advance(1100);
    for (const WatchedLink& each : desk.watched)
        require(!each.asked());
    checkSent(desk.tcp.takeSent());
    return 0;
}
