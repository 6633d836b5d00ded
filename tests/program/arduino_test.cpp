#include "tests/emulated_board/pty_board.h"
#include "tests/program/guarded.h"

#include <gmock/gmock.h>
#include <iostream>
#include <random>

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

/// The program at full speed with an emulated Arduino.
struct Arduino : Guarded {
    QStringList arguments() const {
        return Guarded::arguments() +
               QStringList{"--port", "firmata:" + QString::fromStdString(board.device())};
    }
    std::string state(DrivenProgram& program) const { return program.ask("text StatusBar1Panel6"); }
    /// Both engines run when this returns true; they are refused until the board has started.
    bool runs(DrivenProgram& program) {
        return comesTrue([&] {
            board.takeChanges();
            if (program.ask("click cmdAv") != "done" || program.ask("click cmdAvB") != "done") return true;
            std::this_thread::sleep_for(30ms);
            return board.takeChanges().size() > 10;
        });
    }
    bool goesOff() {
        return comesTrue([this] { return board.levels() == 0; });
    }
    bool isFree() const {
        return comesTrue([this] {
            const int fd = ::open(board.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
            const bool locked = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
            ::close(fd);
            return locked;
        });
    }

    PtyBoard board{folder / "ttyACM0", {.boot = 50ms}};
};

} // namespace

TEST_F(Arduino, AKillLeavesNoCoilOn) {
    constexpr std::size_t kKills = 100;
    std::mt19937 random(1);
    std::vector<double> took;
    int late = 0;
    Stalls stalls;
    while (took.size() < kKills) {
        DrivenProgram program(port, arguments());
        ASSERT_TRUE(runs(program)) << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        ASSERT_NE(watchdog, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000)); // anywhere in a message
        ASSERT_NE(board.levels(), 0);
        stalls.reset();
        const auto moment = PtyBoard::now();
        const double end = endOf(program.pid());
        EXPECT_TRUE(goesOff());
        const double off =
            std::chrono::duration<double, std::milli>(board.takeChanges().back().when - moment).count();
        late += off > end + kLongestOff + stalls.longest() ? 1 : 0;
        took.push_back(off);
        EXPECT_EQ(orphanEnds(watchdog), 0);
        EXPECT_EQ(orphanEnds(standBy), 0);
        EXPECT_EQ(program.ends(), -1);
        EXPECT_EQ(board.levels(), 0);
        ASSERT_TRUE(isFree()) << "somebody still holds the device";
        ASSERT_THAT(board.faults(), IsEmpty());
    }
    EXPECT_LE(late, 2) << "two may be late where the machine holds the emulated board up";
    std::sort(took.begin(), took.end());
    std::cout << kKills << " kills, ms from the kill until the outputs were off, median and longest: "
              << took[took.size() / 2] << ", " << took.back() << '\n';
}

TEST_F(Arduino, EveryOtherEndLeavesItOff) {
    const std::pair<const char*, std::function<void(DrivenProgram&)>> ends[] = {
        {"exit", [](DrivenProgram& p) { p.order("exit"); }},
        {"crash", [](DrivenProgram& p) { p.signal(SIGSEGV); }},
        {"termination", [](DrivenProgram& p) { p.signal(SIGTERM); }},
        {"endless loop", [](DrivenProgram& p) { p.order("hang"); }},
        {"stopped", [](DrivenProgram& p) { p.signal(SIGSTOP); }},
    };
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        {
            DrivenProgram program(port, arguments());
            ASSERT_TRUE(runs(program)) << program.errors();
            end(program);
            EXPECT_TRUE(goesOff());
        }
        EXPECT_TRUE(isFree());
        EXPECT_EQ(board.levels(), 0);
        EXPECT_THAT(board.faults(), IsEmpty());
    }
}

TEST_F(Arduino, PulledOutInMidMoveStopsAllWithOneBoxAndComesBackByItself) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(comesTrue([&] { return state(program).ends_with("is starting"); }));
    ASSERT_TRUE(runs(program)) << program.errors();
    board.unplug();
    std::string text;
    ASSERT_TRUE(comesTrue([&] { return (text = program.ask("box")) != "none"; }));
    EXPECT_THAT(text, HasSubstr("it was unplugged. Plug it in again"));
    EXPECT_THAT(text, HasSubstr("Both engines are stopped."));
    EXPECT_EQ(program.ask("accept"), "done");
    ASSERT_TRUE(comesTrue([&] { return state(program).ends_with("is lost"); }));
    EXPECT_EQ(program.ask("click cmdAv"), "done");
    EXPECT_TRUE(comesTrue(
        [&] { return program.ask("text notice").starts_with("Engine 1 does not start: Arduino"); }));
    board.plugIn();
    ASSERT_TRUE(comesTrue([&] { return !state(program).ends_with("is lost"); }));
    EXPECT_EQ(board.levels(), 0);
    EXPECT_TRUE(runs(program));
    EXPECT_EQ(program.ask("box"), "none");
    EXPECT_THAT(board.faults(), IsEmpty());
}

TEST_F(Arduino, AnotherSketchIsNamedAndItsDeviceIsLetGo) {
    PtyBoard other{folder / "ttyACM1", {.major = 1, .boot = 50ms}};
    DrivenProgram program(port,
                          Guarded::arguments() +
                              QStringList{"--port", "firmata:" + QString::fromStdString(other.device())});
    std::string text;
    ASSERT_TRUE(comesTrue([&] { return (text = program.ask("box")) != "none"; }));
    EXPECT_THAT(text, HasSubstr("speaks Firmata 1.5, not 2: upload StandardFirmata"));
    program.ask("accept");
    EXPECT_TRUE(comesTrue([&] {
        const int fd = ::open(other.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        const bool locked = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
        ::close(fd);
        return locked;
    })) << "nobody can upload the sketch";
    EXPECT_EQ(program.ask("box"), "none");
}

TEST_F(Guarded, TakenAndMissingPinsAreNamed) {
    const std::pair<const char*, const char*> cases[] = {
        {"gpio:gpiochip0:17,27,22,23,24,25,16,10", "gpiochip0: line 10 is taken by \"spi0 CS0\""},
        {"gpio:gpiochip0:17,27,22,23,24,25,16,54", "gpiochip0: it has no line 54"},
        {"gpio:gpiochip9", "gpiochip9: this computer has no such GPIO chip"},
    };
    for (const auto& [outputs, words] : cases) {
        DrivenProgram program(port, arguments() + QStringList{"--port", outputs});
        EXPECT_GT(program.ends(), 0);
        EXPECT_THAT(program.errors(), HasSubstr(words));
    }
}
