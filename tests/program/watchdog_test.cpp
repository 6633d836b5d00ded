#include "tests/platform/linux/fake_k8055.h"
#include "tests/program/guarded.h"

#include <gmock/gmock.h>
#include <iostream>
#include <random>
#include <tuple>

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Lines that stay at 1 when nobody holds them any more.
constexpr const char* kPulledUp = "gpio:gpiochip0:1,2,3,4,5,6,7,8";

struct Kill {
    const char* name;
    int multiplier;
    bool forward;
    const char* outputs = nullptr;
    int off = EmulatedPort::kAllOff;

    friend void PrintTo(const Kill& kill, std::ostream* out) { *out << kill.name; }
};

class GuardedKill : public ::testing::WithParamInterface<Kill>, public Guarded {
  protected:
    GuardedKill() : Guarded(GetParam().outputs, GetParam().off) {}
};

TEST_P(GuardedKill, LeavesNoCoilOn) {
    constexpr int kKills = 25; // a hundred at the port, a hundred at pins
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
                                           Kill{"HalfStepBackward", 2, false},
                                           Kill{"PinsForward", 1, true, "gpio:gpiochip0", 0},
                                           Kill{"PinsBackward", 2, false, "gpio:gpiochip0", 0},
                                           Kill{"PinsLowForward", 1, true, kPulledUp},
                                           Kill{"PinsLowBackward", 2, false, kPulledUp}),
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

/// At the printer port, or at pins.
class GuardedEnd : public ::testing::WithParamInterface<const char*>, public Guarded {
  protected:
    GuardedEnd() : Guarded(GetParam(), GetParam() ? 0 : EmulatedPort::kAllOff) {}
};

INSTANTIATE_TEST_SUITE_P(Outputs, GuardedEnd, ::testing::Values(nullptr, "gpio:gpiochip0"),
                         [](const auto& testing) { return testing.param ? "Pins" : "PrinterPort"; });

TEST_P(GuardedEnd, OfEveryKindLeavesTheOutputsOffAndNoProcessBehind) {
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

TEST_P(GuardedEnd, AnEndlessLoopIsSwitchedOff) {
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
        ASSERT_TRUE(comesTrue([&] { return childrenOf(program.pid()) == std::vector{left}; }));
        EXPECT_FALSE(port.isOff()) << "the engines go on meanwhile";
        // Nobody is started to stand by as long as an engine runs.
        ASSERT_EQ(program.ask("click cmdAlt") + program.ask("click cmdAltB"), "donedone");
        // The new one, which is younger than the one that was left, has started and guards.
        ASSERT_TRUE(comesTrue([&, &older = first, &younger = second] {
            std::tie(older, younger) = program.watchdogs();
            return older == left && younger != killed && filesOf(younger) == onlyThePort;
        }));
        ASSERT_TRUE(program.runs(port, true));
    }
    EXPECT_EQ(program.ask("box"), "none");
    program.signal(SIGKILL);
    EXPECT_EQ(orphanEnds(first), 0);
    EXPECT_EQ(orphanEnds(second), 0);
    EXPECT_TRUE(port.isOff());
    EXPECT_THAT(port.state().writer, AnyOf(first, second));
}

TEST_F(Guarded, PinsFallToTheirPullOnceNobodyHoldsThem) {
    DrivenProgram program(port, arguments() + QStringList{"--port", "gpio:gpiochip0", "--coils-on", "low"});
    ASSERT_TRUE(program.runs(port, true)) << program.errors();
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
    EXPECT_EQ(port.state().data, 0xFF) << "the program has left all coils off";
    EXPECT_EQ(port.data(), 0) << "the resistors switch all coils on: what the dialog warns of";
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
