#include "config/position_slots.h"
#include "config/record_file.h"
#include "config/records.h"
#include "form/form1.h"
#include "platform/linux/storage.h"
#include "rotor/tracking_data.h"
#include "runtime/number.h"
#include "tests/desk.h"
#include "tests/emulated_board/pty_board.h"
#include "tests/wine/linux_program.h"
#include "tests/wine/station_window.h"

#include <QUdpSocket>
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <iomanip>
#include <iostream>
#include <sstream>

// Twinstep itself as a Windows program, in the prefix of the station programs. tests/windows/run.sh builds
// it.

namespace {

using namespace std::chrono_literals;

/// The program with a hand on its buttons.
class WindowsTwinstep : public WindowsProgram {
  public:
    explicit WindowsTwinstep(const QStringList& arguments)
        : WindowsProgram("twinstep_driven.exe", arguments) {}

    std::string ask(const std::string& order) {
        tell(order);
        return line("");
    }
    ::testing::AssertionResult shows(const std::string& label, const std::string& expected) {
        std::string text;
        if (waitFor([&] { return (text = ask("text " + label)) == expected; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << label << " shows \"" << text << "\"";
    }
    /// From the menu, as a user does.
    bool exits() {
        tell("open mnuUscita");
        return ends();
    }
};

/// To within a step, as near as single precision lets them.
template <class Twinstep>
bool standsAt(Twinstep& program, double a, double b) {
    constexpr double kNear = 0.05 * 1.1;
    const auto isNear = [&](const char* digits, double wanted) {
        return std::fabs(runtime::leadingNumber(program.ask("text " + std::string(digits))) - wanted) < kNear;
    };
    return isNear("Label2", a) && isNear("Label8", b);
}

/// A line of a trace about an output of the port.
struct Write {
    std::chrono::microseconds when;
    int output, state;
};

std::vector<Write> writesIn(const std::filesystem::path& trace) {
    std::istringstream lines(bytesOf(trace));
    std::vector<Write> writes;
    std::int64_t time = 0;
    std::string line;
    while (lines >> time && std::getline(lines, line)) {
        std::istringstream words(line);
        std::string device;
        Write write{std::chrono::microseconds(time), 0, 0};
        if (words >> device >> write.output >> write.state && device == "port") writes.push_back(write);
    }
    return writes;
}

/// The writes to one engine's outputs without their times: those of the other engine may come between.
std::vector<int> statesOf(const std::vector<Write>& writes, int firstOutput) {
    std::vector<int> states;
    for (const Write& write : writes) {
        if (write.output >= firstOutput && write.output < firstOutput + 4)
            states.push_back(10 * write.output + write.state);
    }
    return states;
}

struct Spacing {
    double rate;     // of the wanted rate
    double shortest; // of the period
};

/// Of the longest motion of engine A; each step writes its four outputs.
Spacing spacingOf(const std::vector<Write>& writes, std::chrono::microseconds period) {
    std::vector<std::chrono::microseconds> motion, longest;
    int count = 0;
    for (const Write& write : writes) {
        if (write.output > 4 || count++ % 4 != 0) continue;
        if (!motion.empty() && write.when - motion.back() > 20 * period) motion.clear();
        motion.push_back(write.when);
        if (motion.size() > longest.size()) longest = motion;
    }
    const auto part = [&](auto time) {
        return static_cast<double>(time.count()) / static_cast<double>(period.count());
    };
    Spacing spacing{.rate = static_cast<double>(longest.size() - 1) / part(longest.back() - longest.front()),
                    .shortest = 1e9};
    for (std::size_t step = 1; step < longest.size(); ++step)
        spacing.shortest = std::min(spacing.shortest, part(longest[step] - longest[step - 1]));
    return spacing;
}

class WindowsProgramTest : public ::testing::Test {
  protected:
    static constexpr int kMemory = 1;
    static constexpr int kStepsPerSecond = 200;

    void save(const std::filesystem::path& where, short frequencyProgram, short function = form::kCoilTuner,
              short trackingProgram = rotor::kOrbitron) {
        namespace record = config::record;
        std::filesystem::create_directories(where);
        linux_ports::Storage disk;
        config::RecordFile file(disk, where / "save.cfg");
        file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                    config::integerRecord(record::kFastA, kStepsPerSecond),
                    config::integerRecord(record::kSlowA, kStepsPerSecond),
                    config::integerRecord(record::kFastB, kStepsPerSecond),
                    config::integerRecord(record::kSlowB, kStepsPerSecond),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 10),
                    config::integerRecord(record::kFunction, function),
                    config::integerRecord(record::kFrequencyProgram, frequencyProgram),
                    config::integerRecord(record::kN1mmPort, static_cast<short>(n1mmPort)),
                    config::integerRecord(record::kTrackingProgram, trackingProgram),
                    config::textRecord(record::kMemoryPosA + kMemory, "020.00"),
                    config::textRecord(record::kMemoryPosB + kMemory, "010.00"),
                    config::textRecord(record::kMemoryLabel + kMemory, "14.05")});
        file.finish();
    }
    static QStringList arguments(const std::filesystem::path& where, const QString& port = "simulated") {
        const QString drive = "Z:" + QString::fromStdString(where);
        return {"--directory", drive, "--port", port, "--trace", drive + "/trace"};
    }

    const int n1mmPort = freePort();
    TemporaryFolder folder;
    const std::filesystem::path shack = folder.path() / "shack";
};

TEST_F(WindowsProgramTest, RecallsFromHamRadioDeluxeAndFindsAllAgain) {
    save(shack, form::kHamRadioDeluxe);
    DdeServer radio(DdeServer::HamRadioDeluxe, "7.012.000");
    {
        WindowsTwinstep program(arguments(shack));
        ASSERT_EQ(program.ask("click cmdAutoMemConn"), "done");
        ASSERT_TRUE(program.shows("lblAutoMemConn", "Connected"));
        ASSERT_EQ(program.ask("click chkAutoMemOnOff"), "done");
        radio.set("14.200.000");
        EXPECT_TRUE(program.shows("lblUsoA", "14.05"));
        EXPECT_TRUE(waitFor([&] { return standsAt(program, 20, 10); }));
        EXPECT_TRUE(program.exits());
    }
    WindowsTwinstep again(arguments(shack));
    EXPECT_TRUE(again.shows("lblFr1", "14.05"));
    EXPECT_TRUE(again.exits());
}

TEST_F(WindowsProgramTest, HearsLogger32) {
    save(shack, form::kLogger32);
    LoggerWindow logger;
    WindowsTwinstep program(arguments(shack));
    ASSERT_EQ(program.ask("click cmdAutoMemConn"), "done");
    logger.line("subscribed ");
    logger.tell("frequency 14200000");
    EXPECT_TRUE(program.shows("lblLog32DataM", "14.200.000"));
}

TEST_F(WindowsProgramTest, FollowsOrbitronAndSatPc32) {
    const struct {
        DdeServer::Kind kind;
        short number;
        const char *text, *button, *azimuth;
    } programs[] = {{DdeServer::Orbitron, rotor::kOrbitron, "UPDATE AZ123.4 EL45.6", "cmdConnect", "123.4"},
                    {DdeServer::SatPc32, rotor::kSatPc32, "SNAO-7 AZ123.4 EL45.6 UP0 UMFM DN0 DMFM MA1",
                     "chkOpenCom", "123.40"}};
    for (const auto& tracking : programs) {
        save(shack, form::kNoProgram, form::kSatelliteRotor, tracking.number);
        DdeServer server(tracking.kind, tracking.text);
        WindowsTwinstep program(arguments(shack));
        ASSERT_EQ(program.ask("click " + std::string(tracking.button)), "done");
        EXPECT_TRUE(program.shows("lblAzRx", tracking.azimuth)) << tracking.button;
        EXPECT_TRUE(program.exits());
    }
}

/// N1MM Logger, which is heard until the program stands at the memory's positions.
template <class Twinstep>
::testing::AssertionResult recallsByDatagrams(Twinstep& program, int port) {
    program.ask("click cmdAutoMemConn");
    if (const auto listens = program.shows("lblAutoMemConn", "Listening"); !listens) return listens;
    program.ask("click chkAutoMemOnOff");
    QUdpSocket n1mm;
    const bool stands = waitFor([&] {
        n1mm.writeDatagram("<RadioInfo><TXFreq>1420000</TXFreq></RadioInfo>", QHostAddress::LocalHost,
                           static_cast<quint16>(port));
        return standsAt(program, 20, 10);
    });
    waitFor([] { return false; }, 500); // a last step, which may be half a period away
    if (stands) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << program.ask("text Label2") << ' ' << program.ask("text Label8");
}

TEST_F(WindowsProgramTest, StepsAsOnLinuxWhenN1mmTells) {
    const auto linuxShack = folder.path() / "linux";
    save(shack, form::kN1mmLogger);
    save(linuxShack, form::kN1mmLogger);
    {
        WindowsTwinstep program(arguments(shack));
        EXPECT_TRUE(recallsByDatagrams(program, n1mmPort));
        EXPECT_TRUE(program.exits());
    }
    {
        Program program({"--directory", QString::fromStdString(linuxShack), "--port", "simulated", "--trace",
                         QString::fromStdString(linuxShack / "trace")});
        EXPECT_TRUE(recallsByDatagrams(program, n1mmPort));
        program.ask("open mnuUscita");
        EXPECT_TRUE(program.ends());
    }
    const auto here = writesIn(linuxShack / "trace");
    const auto there = writesIn(shack / "trace");
    constexpr std::size_t kStepsA = 400; // of four writes each
    EXPECT_GT(statesOf(here, 1).size(), 4 * kStepsA);
    EXPECT_EQ(statesOf(there, 1), statesOf(here, 1));
    EXPECT_EQ(statesOf(there, 5), statesOf(here, 5));

    constexpr auto kPeriod = std::chrono::microseconds(1s) / kStepsPerSecond;
    const Spacing native = spacingOf(here, kPeriod);
    const Spacing windows = spacingOf(there, kPeriod);
    for (const auto& [name, spacing] : {std::pair{"Linux", native}, {"Windows", windows}})
        std::cout << std::fixed << std::setprecision(3) << name << ", " << kStepsPerSecond
                  << " steps/s: rate " << spacing.rate << ", shortest " << spacing.shortest
                  << " of the period\n";
    EXPECT_GE(windows.shortest, 0.85);
    EXPECT_LE(windows.rate, 1.02);
    EXPECT_GE(windows.rate, native.rate * 0.7); // a busy machine holds Wine up more
}

TEST_F(WindowsProgramTest, IsSwitchedOffByItsWatchdogWhenItIsKilledInMidMove) {
    save(shack, form::kNoProgram);
    PtyBoard board(Wine::instance().folder() / "dosdevices/com5");
    auto best = 1h / 1ms * 1ms;
    // A busy machine may hold up one of them.
    for (int attempt = 0; attempt < 3 && best > 100ms; ++attempt) {
        WindowsTwinstep program(arguments(shack, "firmata:COM5"));
        std::size_t changes = 0; // a board that starts takes a second or two
        ASSERT_TRUE(waitFor([&] {
            program.ask("click cmdAv");
            return (changes += board.takeChanges().size()) > 20;
        })) << program.ask("text StatusBar1Panel6")
            << program.ask("box");
        const auto killed = PtyBoard::now();
        program.kill();
        ASSERT_TRUE(waitFor([&] { return board.levels() == 0; }));
        const auto off = board.takeChanges().back().when - killed;
        best = std::min(best, std::chrono::duration_cast<std::chrono::milliseconds>(off));
        std::cout << "killed: outputs off after " << off / 1ms << " ms\n";
    }
    EXPECT_LE(best, 100ms);
    EXPECT_THAT(board.faults(), ::testing::IsEmpty());
}

TEST_F(WindowsProgramTest, SavesAndSwitchesOffHoweverItIsAskedToEnd) {
    // A task manager that asks, and the end of the user's session.
    for (const QStringList& way :
         {QStringList{"taskkill", "/IM", "twinstep_driven.exe"}, QStringList{"wineboot", "--end-session"}}) {
        SCOPED_TRACE(way.front().toStdString());
        const auto where = shack / way.front().toStdString();
        save(where, form::kNoProgram);
        WindowsTwinstep program(arguments(where));
        ASSERT_EQ(program.ask("click cmdAv"), "done");
        ASSERT_TRUE(waitFor([&] { return program.ask("text Label2") > "000.50"; }));
        Wine::instance().run("wine", way);
        ASSERT_TRUE(program.ends());
        std::array<int, 8> last{};
        for (const Write& write : writesIn(where / "trace"))
            last.at(static_cast<std::size_t>(write.output - 1)) = write.state;
        EXPECT_THAT(last, ::testing::Each(1));
        EXPECT_FALSE(std::filesystem::exists(where / config::kPositionFile));
    }
}

} // namespace
