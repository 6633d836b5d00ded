#include "platform/firmata/board.h"
#include "tests/emulated_board/sketch.h"

#include <gmock/gmock.h>
#include <random>

using namespace std::chrono_literals;
using firmata::Board;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr int kBaud = 57600;
constexpr std::array<int, 8> kPins{2, 3, 4, 5, 6, 7, 8, 9}, kApart{4, 5, 6, 7, 8, 9, 10, 11};

/// The talk between a board and its sketch in virtual time, in steps of 0.1 ms; what the sketch says arrives
/// in pieces of any length.
struct Talk {
    explicit Talk(Sketch::Kind kind = {}, firmata::Wiring wiring = {kPins, kBaud, 0})
        : sketch(std::move(kind)), board(wiring, 0ns) {
        sketch.reset(0ns);
    }

    /// Advances; `tick`, if given, is called in each step.
    void pass(Board::Time span, const std::function<void()>& tick = {}) {
        for (const auto end = now + span; now < end; now += 100us) {
            if (tick) tick();
            sketch.receive(board.takeDue(now), now);
            for (const std::uint8_t byte : sketch.work(now))
                saying.push_back(byte);
            const auto heard = std::min<std::size_t>(saying.size(), random() % 4);
            board.hear(std::span(saying).first(heard), now);
            saying.erase(saying.begin(), saying.begin() + static_cast<std::ptrdiff_t>(heard));
            board.faultAt(now);
        }
    }
    void start() {
        pass(3s);
        ASSERT_TRUE(board.ready()) << board.faultAt(now);
    }
    std::string fault() { return board.faultAt(now); }

    Board::Time now{};
    std::mt19937 random{1};
    Sketch sketch;
    Board board;
    Sketch::Bytes saying;
};

/// An engine that makes a full step at this interval wherever its last pattern was taken, as the stepper
/// does.
struct Engine {
    Talk& talk;
    int& levels; // of both engines
    int shift;
    Board::Time interval;
    Board::Time next = talk.now;
    int steps = 0;

    void tick() {
        if (talk.now < next) return;
        next += interval;
        if (!talk.board.taken(15 << shift)) return;
        constexpr int kPhases[] = {0b0011, 0b0110, 0b1100, 0b1001};
        levels = (levels & ~(15 << shift)) | kPhases[steps++ % 4] << shift;
        talk.board.want(levels);
    }
    /// The phases that the coils have seen, in turn; each exactly once.
    int made(const std::vector<Sketch::Change>& changes) const {
        constexpr int kPhases[] = {0b0011, 0b0110, 0b1100, 0b1001};
        int count = 0;
        for (const auto& change : changes)
            if ((change.levels >> shift & 15) == kPhases[count % 4]) ++count;
        return count;
    }
};

} // namespace

TEST(FirmataBoard, SetsUpTheStockSketchAndSaysNothingElse) {
    for (const int off : {0, 255}) {
        for (const bool noisy : {false, true}) {
            Sketch::Kind kind;
            kind.chatters = noisy;
            if (noisy) kind.noise = {0xF0, 0x79, 2, 0x33, 0xFF, 0x00, 0xF9, 0xE1, 0x7F, 0xF0};
            Talk talk(kind, {kPins, kBaud, off});
            talk.pass(1s);
            EXPECT_FALSE(talk.board.ready());
            talk.start();
            EXPECT_EQ(talk.sketch.levels(), off);
            EXPECT_THAT(talk.sketch.faults(), IsEmpty());
            // The coils of a board whose 0 energises them are on from its start until its first levels.
            for (const auto& change : talk.sketch.takeChanges())
                EXPECT_LT(change.when, 1600ms);
            const int before = talk.sketch.queries();
            talk.pass(10s);
            EXPECT_NEAR(talk.sketch.queries() - before, 40, 1);
            EXPECT_EQ(talk.fault(), "");
            EXPECT_EQ(talk.sketch.level(13), 0);
        }
    }
}

TEST(FirmataBoard, MakesOnlyThosePinsOutputsThatAreNone) {
    Talk talk({.inputs = {3, 9}}, {kPins, kBaud, 255});
    talk.start();
    EXPECT_EQ(talk.sketch.levels(), 255);
    EXPECT_THAT(talk.sketch.faults(), IsEmpty());
}

TEST(FirmataBoard, NamesWhatIsWrong) {
    struct Case {
        const char* name;
        Sketch::Kind kind;
        std::array<int, 8> pins;
        const char* words;
    };
    const Case cases[] = {
        {"nobody", {.mute = true}, kPins, "does not answer"},
        {"an old sketch", {.major = 1}, kPins, "Firmata 1.5"},
        {"a long boot", {.boot = 12s}, kPins, "does not answer"},
        {"no such pin", {}, {2, 3, 4, 5, 6, 7, 8, 20}, "pin 20 of the board cannot be an output"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        Talk talk(each.kind, {each.pins, kBaud, 0});
        talk.pass(9900ms);
        talk.pass(200ms);
        EXPECT_FALSE(talk.board.ready());
        EXPECT_THAT(talk.fault(), HasSubstr(each.words));
    }
    Talk stranger({.mute = true});
    stranger.saying = {'$', 'G', 'P', 'G', 'G', 'A', 0xF9, '1', '2', '\n'};
    stranger.pass(11s);
    EXPECT_THAT(stranger.fault(), HasSubstr("Firmata 49.50"));
    Talk other({.mute = true});
    other.saying = {'$', 'G', 'P', 'G', 'G', 'A', '\n'};
    other.pass(11s);
    EXPECT_THAT(other.fault(), HasSubstr("not Firmata"));
}

TEST(FirmataBoard, ASilentOrRestartedBoardIsNoticed) {
    Talk talk;
    talk.start();
    talk.sketch.setMute(true);
    talk.pass(800ms);
    EXPECT_EQ(talk.fault(), "");
    talk.pass(700ms);
    EXPECT_THAT(talk.fault(), HasSubstr("has not answered for a second"));

    Talk weak({.boot = 300ms});
    weak.start();
    weak.sketch.reset(weak.now);
    weak.pass(600ms);
    EXPECT_THAT(weak.fault(), HasSubstr("restarted"));
}

TEST(FirmataBoard, EveryStepReachesTheCoilsAtTheRateOfTheLine) {
    struct Case {
        const char* name;
        Sketch::Kind kind;
        std::array<int, 8> pins;
        bool both;
        double least, most; // steps/s of each engine, of 1000
    };
    const Case cases[] = {
        {"one engine on one port", {}, kPins, false, 999, 1001},
        {"two engines, three messages", {}, kPins, true, 930, 965},
        {"two engines on ports of their own", {}, kApart, true, 930, 965},
        {"at twice the speed", {.baud = 115200}, kPins, true, 999, 1001},
        {"a slow board", {.perByte = 1ms, .flowControl = true}, kPins, true, 120, 170},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        Talk talk(each.kind, {each.pins, each.kind.baud, 0});
        talk.start();
        int levels = 0;
        Engine a{talk, levels, 0, 1ms}, b{talk, levels, 4, 1ms, talk.now + 400us};
        talk.sketch.takeChanges();
        constexpr int kSeconds = 5;
        talk.pass(std::chrono::seconds(kSeconds), [&] {
            a.tick();
            if (each.both) b.tick();
        });
        EXPECT_GE(a.steps, each.least * kSeconds);
        EXPECT_LE(a.steps, each.most * kSeconds);
        EXPECT_TRUE(!each.both || std::abs(a.steps - b.steps) < a.steps / 10) << "an engine starves";
        talk.pass(2s);
        EXPECT_TRUE(talk.board.taken(255));
        if (each.pins == kPins) {
            const auto changes = talk.sketch.takeChanges();
            EXPECT_EQ(a.made(changes), a.steps);
            EXPECT_EQ(b.made(changes), b.steps);
            EXPECT_EQ(talk.sketch.levels(), levels);
        }
        EXPECT_THAT(talk.sketch.faults(), IsEmpty());
        EXPECT_EQ(talk.fault(), "");
    }
}

TEST(FirmataBoard, AStopOverAFullLineTakesAsLongAsTheBuffer) {
    Talk talk;
    talk.start();
    int levels = 0;
    Engine a{talk, levels, 0, 300us}, b{talk, levels, 4, 300us};
    talk.pass(1s, [&] { a.tick(), b.tick(); });
    talk.board.want(0);
    const auto stop = talk.now;
    talk.pass(20ms);
    EXPECT_EQ(talk.sketch.levels(), 0);
    EXPECT_LE(talk.sketch.takeChanges().back().when - stop, 13ms);
}

TEST(FirmataMessages, OffEndsACutMessage) {
    Sketch sketch({.boot = 0ns});
    sketch.reset(0ns);
    firmata::Bytes bytes{0x90, 0x7C};
    const auto off = firmata::offMessage({kPins, kBaud, 255});
    bytes.insert(bytes.end(), off.begin(), off.end());
    sketch.receive(bytes, 0ns);
    sketch.work(1s);
    EXPECT_EQ(sketch.levels(), 255);
    EXPECT_THAT(sketch.faults(), IsEmpty());
}
