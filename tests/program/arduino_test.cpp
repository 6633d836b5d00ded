#include "tests/emulated_board/pty_board.h"
#include "tests/program/guarded.h"

#include <gmock/gmock.h>
#include <iostream>
#include <random>

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

/// The program at full speed with an emulated Arduino, whose levels `off` energise no coil.
struct Arduino : Guarded {
    explicit Arduino(int off = 0) : Guarded(nullptr, off) {}

    QStringList arguments() const {
        return Guarded::arguments() + QStringList{"--port",
                                                  "firmata:" + QString::fromStdString(board.device()),
                                                  "--coils-on", off_ == 0 ? "high" : "low"};
    }
    void store(const std::string& lines) const {
        std::ofstream(folder / "twinstep.ini") << "[hardware]\n" << lines;
    }
    static std::string state(DrivenProgram& program) { return program.ask("text StatusBar1Panel6"); }
    static bool isLost(DrivenProgram& program) {
        return comesTrue([&] { return state(program).ends_with("is lost"); });
    }
    static std::string box(DrivenProgram& program) {
        std::string text;
        comesTrue([&] { return (text = program.ask("box")) != "none"; });
        return text;
    }
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
        return comesTrue([this] { return board.levels() == off_; });
    }
    static bool isFree(const PtyBoard& board) {
        return comesTrue([&] {
            const int fd = ::open(board.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
            const bool locked = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
            ::close(fd);
            return locked;
        });
    }

    PtyBoard board{folder / "ttyACM0", {.boot = 50ms}};
};

/// With either level; the user has agreed to Low.
class ArduinoEnd : public ::testing::WithParamInterface<int>, public Arduino {
  protected:
    ArduinoEnd() : Arduino(GetParam()) { store("low-allowed=" + board.device().string() + "\n"); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(CoilsOn, ArduinoEnd, ::testing::Values(0, 255),
                         [](const auto& testing) { return testing.param == 0 ? "High" : "Low"; });

TEST_P(ArduinoEnd, ByAKillLeavesNoCoilOn) {
    constexpr std::size_t kKills = 50; // a hundred with both levels
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
        ASSERT_NE(board.levels(), off_);
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
        EXPECT_EQ(board.levels(), off_);
        ASSERT_THAT(board.faults(), IsEmpty());
        // Opening resets the board.
        ASSERT_TRUE(isFree(board)) << "somebody still holds the device";
    }
    EXPECT_LE(late, 1) << "one may be late where the machine holds the emulated board up";
    std::sort(took.begin(), took.end());
    std::cout << kKills << " kills, ms from the kill until the outputs were off, median and longest: "
              << took[took.size() / 2] << ", " << took.back() << '\n';
}

TEST_P(ArduinoEnd, OfEveryOtherKindLeavesNoCoilOn) {
    const std::pair<const char*, std::function<void(DrivenProgram&)>> ends[] = {
        {"exit", [](DrivenProgram& p) { p.order("exit"); }},
        {"crash", [](DrivenProgram& p) { p.signal(SIGSEGV); }},
        {"termination", [](DrivenProgram& p) { p.signal(SIGTERM); }},
        {"endless loop", [](DrivenProgram& p) { p.order("hang"); }},
        {"stopped", [](DrivenProgram& p) { p.signal(SIGSTOP); }},
        {"kill while the board does not read",
         [this](DrivenProgram& p) {
             board.setDeaf(true);
             std::this_thread::sleep_for(100ms);
             endOf(p.pid());
             board.setDeaf(false);
         }},
    };
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        std::pair<pid_t, pid_t> guards;
        {
            DrivenProgram program(port, arguments());
            ASSERT_TRUE(runs(program)) << program.errors();
            guards = program.watchdogs();
            end(program);
            EXPECT_TRUE(goesOff());
        }
        // A program that crashes may send one more pattern, and the watchdog then "off" once more.
        for (const pid_t guard : {guards.first, guards.second})
            EXPECT_TRUE(comesTrue([&] { return ::waitpid(guard, nullptr, WNOHANG) != 0; }));
        EXPECT_TRUE(goesOff());
        EXPECT_THAT(board.faults(), IsEmpty());
        EXPECT_TRUE(isFree(board));
    }
}

TEST_F(Arduino, PulledOutInMidMoveStopsAllWithOneBoxAndComesBackByItself) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(comesTrue([&] { return state(program).ends_with("is starting"); }));
    ASSERT_TRUE(runs(program)) << program.errors();
    board.unplug();
    const std::string text = box(program);
    EXPECT_THAT(text, HasSubstr("it was unplugged. Plug it in again"));
    EXPECT_THAT(text, HasSubstr("Both engines are stopped."));
    EXPECT_EQ(program.ask("accept"), "done");
    ASSERT_TRUE(isLost(program));
    EXPECT_EQ(program.ask("click cmdAv"), "done");
    EXPECT_TRUE(comesTrue(
        [&] { return program.ask("text notice").starts_with("Engine 1 does not start: Arduino"); }));
    // Neither a test nor saving ends the wait.
    EXPECT_EQ(program.ask("open mnuHardware"), "done");
    for (const char* button : {"cmdTestA", "cmdSaveHardware"}) {
        EXPECT_EQ(program.ask("open " + std::string(button)), "done");
        EXPECT_THAT(box(program), HasSubstr("there is no such device: plug the board in"));
        EXPECT_EQ(program.ask("accept"), "done");
        EXPECT_TRUE(isLost(program)) << state(program);
    }
    board.plugIn();
    ASSERT_TRUE(comesTrue([&] { return !state(program).ends_with("is lost"); }));
    EXPECT_EQ(board.levels(), 0);
    EXPECT_TRUE(runs(program));
    EXPECT_EQ(program.ask("box"), "none");
    EXPECT_THAT(board.faults(), IsEmpty());
}

TEST_F(Arduino, ThatIsAwayAtTheStartIsTakenWhenItComes) {
    store("port=firmata:" + board.device().string() + "\n");
    board.unplug();
    DrivenProgram program(port, Guarded::arguments());
    ASSERT_TRUE(isLost(program));
    EXPECT_EQ(program.ask("box"), "none") << "but for the notice";
    EXPECT_THAT(program.errors(), HasSubstr("plug the board in. The engines do not start until"));
    board.plugIn();
    EXPECT_TRUE(runs(program));
}

TEST_F(Arduino, ThatStallsHoldsNeitherTheWindowNorAWatchdog) {
    ::setenv("STALLED_BOARD", "1", 1);
    DrivenProgram program(port, arguments());
    ::unsetenv("STALLED_BOARD");
    ASSERT_TRUE(runs(program)) << program.errors();
    const auto watchdogs = program.watchdogs();
    board.setDeaf(true);
    EXPECT_THAT(box(program), HasSubstr("has not answered for a second"));
    EXPECT_EQ(program.ask("accept"), "done");
    ASSERT_TRUE(isLost(program));
    EXPECT_EQ(program.ask("open mnuHardware"), "done");
    EXPECT_EQ(program.ask("open cmdSaveHardware"), "done");
    ASSERT_TRUE(comesTrue([&] { return state(program).ends_with("is starting"); }));
    EXPECT_EQ(program.watchdogs(), watchdogs);
    board.setDeaf(false);
    EXPECT_TRUE(runs(program));
}

TEST_F(Arduino, GetsLowOnlyAfterTheBox) {
    const std::string device = board.device();
    const QStringList byCommandLine{"--port", "firmata:" + QString::fromStdString(device), "--coils-on",
                                    "low"};
    for (const bool byFile : {true, false}) {
        SCOPED_TRACE(byFile);
        store(byFile ? "port=firmata:" + device + "\ncoils-on=low\n" : "");
        const QStringList all = Guarded::arguments() + (byFile ? QStringList() : byCommandLine);
        board.takeChanges();
        {
            DrivenProgram program(port, all);
            EXPECT_THAT(box(program), HasSubstr("all eight coils are on"));
            EXPECT_EQ(program.ask("decline"), "done");
            EXPECT_EQ(state(program), "Arduino is not used");
            EXPECT_EQ(program.ask("click cmdAv"), "done");
            EXPECT_TRUE(comesTrue([&] {
                return program.ask("text notice").find("confirm Low in") != std::string::npos;
            })) << program.ask("text notice");
            std::this_thread::sleep_for(1200ms); // past a look at the port
            EXPECT_THAT(board.takeChanges(), IsEmpty()) << "it was opened";
        }
        {
            DrivenProgram program(port, all);
            EXPECT_THAT(box(program), HasSubstr("all eight coils are on"));
            EXPECT_EQ(program.ask("accept"), "done");
            EXPECT_TRUE(comesTrue([this] { return board.levels() == 255; }));
            program.signal(SIGTERM);
            EXPECT_EQ(program.ends(), 0);
        }
        DrivenProgram program(port, all);
        ASSERT_TRUE(runs(program)) << program.ask("box");
        EXPECT_EQ(program.ask("box"), "none") << "it was answered";
        EXPECT_THAT(board.faults(), IsEmpty());
        program.signal(SIGTERM);
        EXPECT_EQ(program.ends(), 0);
        EXPECT_TRUE(comesTrue([this] { return board.levels() == 255; }));
    }
}

TEST_F(Arduino, WithAnotherSketchIsNamedAndItsDeviceIsLetGo) {
    PtyBoard other{folder / "ttyACM1", {.major = 1, .boot = 50ms}};
    DrivenProgram program(port,
                          Guarded::arguments() +
                              QStringList{"--port", "firmata:" + QString::fromStdString(other.device())});
    EXPECT_THAT(box(program), HasSubstr("speaks Firmata 1.5, not 2: upload StandardFirmata"));
    program.ask("accept");
    EXPECT_TRUE(isFree(other)) << "nobody can upload the sketch";
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
