#include "config/record_file.h"
#include "config/records.h"
#include "form/engine_panel.h"
#include "form/shell_panel.h"
#include "platform/linux/storage.h"
#include "tests/platform/linux/fake_k8055.h"
#include "tests/program/driven_program.h"

#include <atomic>
#include <gmock/gmock.h>
#include <iostream>
#include <poll.h>
#include <random>
#include <sys/syscall.h>
#include <tuple>

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace {

namespace record = config::record;

constexpr double kLongestOff = 100; // milliseconds from the controller's end until every coil is off

std::int64_t now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// The longest time that this machine kept somebody waiting who wanted nothing but to wake up. Measured
/// beside what is timed, because a busy or virtual machine stalls them both.
class Stalls {
  public:
    Stalls() = default;
    Stalls(const Stalls&) = delete;
    Stalls& operator=(const Stalls&) = delete;
    ~Stalls() { ends_ = true, thread_.join(); }

    void reset() { longest_ = 0; }
    /// Milliseconds.
    double longest() const { return static_cast<double>(longest_) / 1e6; }

  private:
    void look() {
        while (!ends_) {
            const auto before = now();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const std::int64_t late = now() - before - 1'000'000;
            if (late > longest_) longest_ = late;
        }
    }

    std::atomic<bool> ends_ = false;
    std::atomic<std::int64_t> longest_ = 0;
    std::thread thread_{[this] { look(); }};
};

/// Kills a process and waits until the system has ended it: milliseconds.
double endOf(pid_t pid) {
    const auto process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    EXPECT_GE(process, 0);
    const auto moment = now();
    ::kill(pid, SIGKILL);
    pollfd ended{.fd = process, .events = POLLIN, .revents = 0};
    ::poll(&ended, 1, -1);
    ::close(process);
    return static_cast<double>(now() - moment) / 1e6;
}

struct Guarded : ::testing::Test {
    Guarded() {
        adoptOrphans();
        setUp(1000, 1);
    }
    ~Guarded() override { std::filesystem::remove_all(folder); }

    /// Both engines at this speed in steps/s; multiplier 1: full step, 2: half step.
    void setUp(int speed, int multiplier) const {
        linux_ports::Storage disk;
        config::RecordFile(disk, folder / "save.cfg")
            .write(
                {config::integerRecord(record::kFunction, form::kCoilTuner),
                 config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 1),
                 config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 1),
                 config::integerRecord(record::kSlowA, speed), config::integerRecord(record::kFastA, speed),
                 config::integerRecord(record::kSlowB, speed), config::integerRecord(record::kFastB, speed),
                 config::byteRecord(record::kMultiplierA, multiplier),
                 config::byteRecord(record::kMultiplierB, multiplier)});
    }
    QStringList arguments() const { return {"--directory", QString::fromStdString(folder)}; }

    /// Waits for the outputs to go off after `moment`, and says how long that took, in milliseconds.
    double offAfter(std::int64_t moment) const {
        EXPECT_TRUE(comesTrue([&] { return port.isOff(); }));
        return static_cast<double>(port.state().changed - moment) / 1e6;
    }

    /// Ends a program in mid-move, sees that nothing of it is left, and says after how many milliseconds the
    /// outputs were off, beyond what the machine itself stalled.
    double offBy(DrivenProgram& program, const std::function<void()>& end) {
        EXPECT_TRUE(program.runs(port, true)) << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        EXPECT_NE(watchdog, 0);
        const Stalls stalls;
        const auto moment = now();
        end();
        const double took = offAfter(moment) - stalls.longest();
        program.ends();
        // Where it ended in good order, the program itself has reaped it.
        for (const pid_t guard : {watchdog, standBy})
            EXPECT_TRUE(comesTrue([&] { return ::waitpid(guard, nullptr, WNOHANG) != 0; }));
        EXPECT_TRUE(port.isOff());
        EXPECT_TRUE(port.claim()) << "somebody still holds the port";
        port.release();
        return took;
    }
    /// Whether the outputs went off in time in one of three rounds: a busy machine may take longer to end a
    /// process.
    static bool inTime(const std::function<double()>& round) {
        for (int rounds = 0; rounds < 3; ++rounds) {
            if (round() <= kLongestOff) return true;
        }
        return false;
    }

    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "twinstep-XXXXXX").string();
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    EmulatedPort port{folder / "port"};
};

} // namespace

struct Kill {
    const char* name;
    int multiplier;
    bool forward;

    friend void PrintTo(const Kill& kill, std::ostream* out) { *out << kill.name; }
};

class GuardedKill : public Guarded, public ::testing::WithParamInterface<Kill> {};

TEST_P(GuardedKill, LeavesNoCoilOn) {
    constexpr int kKills = 25; // a hundred in all four
    setUp(1000, GetParam().multiplier);
    std::mt19937 random(1);
    std::vector<double> took, ends;
    double longestStall = 0;
    Stalls stalls;
    for (int kill = 0; kill < kKills; ++kill) {
        DrivenProgram program(port, arguments());
        ASSERT_TRUE(program.runs(port, GetParam().forward)) << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        ASSERT_NE(watchdog, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000)); // anywhere in a step
        ASSERT_FALSE(port.isOff());

        stalls.reset();
        const auto moment = now();
        ends.push_back(endOf(program.pid()));
        took.push_back(offAfter(moment));
        // Taken from the kill, which on a busy machine is well before the end that the watchdog can see.
        EXPECT_LE(took.back(), ends.back() + kLongestOff + stalls.longest());
        EXPECT_EQ(orphanEnds(watchdog), 0);
        EXPECT_EQ(orphanEnds(standBy), 0);
        longestStall = std::max(longestStall, stalls.longest());

        EXPECT_EQ(program.ends(), -1);
        EXPECT_TRUE(port.isOff());
        EXPECT_THAT(port.state().writer, AnyOf(watchdog, standBy));
        EXPECT_TRUE(port.claim()) << "somebody still holds the port";
        port.release();
    }
    std::sort(took.begin(), took.end());
    std::sort(ends.begin(), ends.end());
    std::cout << kKills << " kills, ms from the kill, median and longest: outputs off " << took[kKills / 2]
              << ", " << took.back() << "; process ended " << ends[kKills / 2] << ", " << ends.back()
              << "; the machine's longest stall " << longestStall << '\n';
}

INSTANTIATE_TEST_SUITE_P(InMidMove, GuardedKill,
                         ::testing::Values(Kill{"FullStepForward", 1, true},
                                           Kill{"FullStepBackward", 1, false},
                                           Kill{"HalfStepForward", 2, true},
                                           Kill{"HalfStepBackward", 2, false}),
                         [](const auto& testing) { return testing.param.name; });

TEST_F(Guarded, AKillLeavesNoOutputOfTheUsbBoardOn) {
    using namespace std::chrono_literals;
    constexpr int kKills = 10;
    FakeK8055 bus;
    bus.plugIn(0, 0);
    bus.takeFor(4ms);
    std::mt19937 random(1);
    for (int kill = 0; kill < kKills; ++kill) {
        DrivenProgram program(port, arguments() + QStringList{"--usb", "k8055"});
        ASSERT_EQ(program.ask("click chkUsbOn"), "done");
        ASSERT_TRUE(program.runs(port, true)) << program.ask("box") << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        ASSERT_NE(watchdog, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
        // In every other round the kill surely finds a report under way, which the board takes after all.
        const bool underWay = kill % 2 == 0;
        if (underWay) {
            bus.hang();
            ASSERT_TRUE(comesTrue([&] { return bus.isBusy(); }));
        }
        ASSERT_GT(bus.outputs(), 0);
        const auto before = bus.takeReports().size();
        ASSERT_GT(before, 10U);
        endOf(program.pid());
        EXPECT_TRUE(!underWay || bus.takeReports().empty());
        bus.release();
        EXPECT_EQ(orphanEnds(watchdog), 0);
        EXPECT_EQ(orphanEnds(standBy), 0);
        EXPECT_EQ(bus.outputs(), 0);
        EXPECT_TRUE(port.isOff());
        bus.takeReports();
    }
}

TEST_F(Guarded, EveryEndLeavesTheOutputsOffAndNoProcessBehind) {
    using End = std::function<void(DrivenProgram&)>;
    const std::vector<std::pair<const char*, End>> ends = {
        {"exit", [](DrivenProgram& p) { p.order("exit"); }},
        {"abort", [](DrivenProgram& p) { p.order("abort"); }},
        {"crash", [](DrivenProgram& p) { p.signal(SIGSEGV); }},
        {"termination", [](DrivenProgram& p) { p.signal(SIGTERM); }},
        {"Ctrl+C, which reaches the whole group", [](DrivenProgram& p) { ::kill(-p.pid(), SIGINT); }},
        {"kill -9 of the whole group", [](DrivenProgram& p) { ::kill(-p.pid(), SIGKILL); }},
    };
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(inTime([this, &how = end] {
            DrivenProgram program(port, arguments());
            return offBy(program, [&] { how(program); });
        }));
    }
}

TEST_F(Guarded, ALostDisplayLeavesTheOutputsOff) {
    EXPECT_TRUE(inTime([this] {
        QProcess server;
        server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp"});
        EXPECT_TRUE(server.waitForStarted()) << "Xvfb is missing";
        while (!server.canReadLine() && server.waitForReadyRead(15000)) {
        }
        DrivenProgram program(port, arguments(), ":" + server.readLine().trimmed());
        const double took = offBy(program, [&] { server.kill(); });
        server.waitForFinished();
        return took;
    }));
}

TEST_F(Guarded, AStoppedProgramIsSwitchedOffAndSaysSoWhenItGoesOn) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(program.runs(port, true)) << program.errors();
    const auto moment = now();
    program.signal(SIGSTOP);
    const double took = offAfter(moment);
    EXPECT_GE(took, 1600) << "the last beat is a quarter of a second old at most";
    EXPECT_LE(took, 10000);
    EXPECT_EQ(port.state().writer, program.watchdog());

    program.signal(SIGCONT);
    std::string text;
    EXPECT_TRUE(comesTrue([&] { return (text = program.ask("box")) != "none"; }));
    EXPECT_THAT(text, HasSubstr("did not answer for two seconds"));
    EXPECT_THAT(text, HasSubstr("Both engines are stopped. The outputs are off."));
    const auto writes = port.state().writes;
    EXPECT_EQ(program.ask("accept"), "done");
    EXPECT_EQ(program.ask("box"), "none");
    EXPECT_EQ(port.state().writes, writes) << "an engine still runs";
    EXPECT_TRUE(port.isOff());

    EXPECT_TRUE(program.runs(port, false));
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
    EXPECT_TRUE(port.isOff());
}

TEST_F(Guarded, AnEndlessLoopIsSwitchedOff) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(program.runs(port, true)) << program.errors();
    const auto [watchdog, standBy] = program.watchdogs();
    program.order("hang");
    EXPECT_TRUE(comesTrue([&] { return port.isOff(); }));
    EXPECT_EQ(port.state().writer, watchdog);
    program.signal(SIGKILL);
    EXPECT_EQ(orphanEnds(watchdog), 0);
    EXPECT_EQ(orphanEnds(standBy), 0);
}

TEST_F(Guarded, AKilledWatchdogIsReplaced) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(program.runs(port, true)) << program.errors();
    auto [first, second] = program.watchdogs();
    ASSERT_NE(first, 0);
    const std::vector<std::string> onlyThePort{port.path().string()};
    for (const bool standsBy : {false, true}) {
        const pid_t killed = standsBy ? second : first;
        const pid_t left = standsBy ? first : second;
        ::kill(killed, SIGKILL);
        // The dead one has been reaped, and the new one, which is younger than the one that was left, has
        // started and guards.
        ASSERT_TRUE(comesTrue([&, &older = first, &younger = second] {
            std::tie(older, younger) = program.watchdogs();
            return older == left && younger != killed && filesOf(younger) == onlyThePort;
        }));
    }
    EXPECT_EQ(program.ask("box"), "none");
    EXPECT_FALSE(port.isOff()) << "the engines go on meanwhile";
    program.signal(SIGKILL);
    EXPECT_EQ(orphanEnds(first), 0);
    EXPECT_EQ(orphanEnds(second), 0);
    EXPECT_TRUE(port.isOff());
    EXPECT_THAT(port.state().writer, AnyOf(first, second));
}

TEST_F(Guarded, KilledTogetherWithItsWatchdogItLeavesNoCoilOn) {
    constexpr int kKills = 40;
    std::mt19937 random(2);
    for (int kill = 0; kill < kKills; ++kill) {
        SCOPED_TRACE(kill);
        DrivenProgram program(port, arguments());
        ASSERT_TRUE(program.runs(port, true)) << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        ASSERT_NE(watchdog, 0);
        ::kill(watchdog, SIGKILL);
        // At once, or while the other one takes its place and a new one is started.
        std::this_thread::sleep_for(std::chrono::microseconds(kill % 2 == 0 ? 0 : random() % 20000));
        program.signal(SIGKILL);
        EXPECT_TRUE(comesTrue([&] { return port.isOff(); }, 2000));
        EXPECT_EQ(orphanEnds(standBy), 0);
        EXPECT_TRUE(comesTrue([&] { return port.claim(); })) << "somebody still holds the port";
        port.release();
        EXPECT_TRUE(port.isOff());
    }
}

TEST_F(Guarded, ThePortIsFreeAsSoonAsTheProgramHasEnded) {
    for (int round = 0; round < 5; ++round) {
        DrivenProgram program(port, arguments() + QStringList{"--port", "/dev/parport0"});
        ASSERT_TRUE(program.runs(port, true)) << program.errors();
        program.signal(SIGTERM);
        EXPECT_EQ(program.ends(), 0);
    }
}

TEST_F(Guarded, TheWatchdogHoldsNothingButThePort) {
    DrivenProgram program(port, arguments());
    ASSERT_TRUE(program.runs(port, true)) << program.errors();
    EXPECT_THAT(filesOf(program.watchdog()), ElementsAre(port.path().string()));
    EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(program.watchdog()) + "/cwd"), "/");
}

TEST_F(Guarded, WithoutAWatchdogNoPortIsTaken) {
    // A program that stands alone in a folder finds none.
    const auto alone = folder / "bin" / "twinstep";
    std::filesystem::create_directories(alone.parent_path());
    std::filesystem::copy_file(TWINSTEP_PROGRAM, alone);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("LD_PRELOAD", TWINSTEP_EMULATED_PORT);
    environment.insert("EMULATED_PORT", QString::fromStdString(port.path()));
    process.setProcessEnvironment(environment);
    process.start(QString::fromStdString(alone), arguments() + QStringList{"--port", "/dev/parport0"});
    ASSERT_TRUE(process.waitForFinished(15000));
    EXPECT_NE(process.exitCode(), 0);
    const std::string errors = process.readAllStandardError().toStdString();
    EXPECT_THAT(errors, HasSubstr("twinstep: The watchdog " +
                                  (folder / "libexec/twinstep/twinstep-watchdog").string()));
}
