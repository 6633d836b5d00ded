#include "config/record_file.h"
#include "config/records.h"
#include "form/form1.h"
#include "platform/linux/storage.h"
#include "tests/desk.h"
#include "tests/wine/linux_program.h"
#include "tests/wine/station_window.h"

#include <QUdpSocket>
#include <sstream>

// Twinstep itself as a Windows program, in the prefix of the station programs. tests/windows/run.sh builds
// it.

namespace {

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

/// What a trace says about the outputs of one engine, in their order: its time is left out, and so is what
/// belongs to the other engine.
std::vector<std::string> writesTo(const std::string& trace, char firstBit, char lastBit) {
    std::vector<std::string> writes;
    std::istringstream lines(trace);
    for (std::string time, device, bit, value, rest; lines >> time >> device && std::getline(lines, rest);) {
        std::istringstream words(rest);
        if (device == "port" && words >> bit >> value && bit.front() >= firstBit && bit.front() <= lastBit)
            writes.push_back(bit + ' ' + value);
    }
    return writes;
}

class WindowsProgramTest : public ::testing::Test {
  protected:
    static constexpr int kMemory = 1;

    void save(const std::filesystem::path& where, short frequencyProgram, short function = form::kCoilTuner) {
        namespace record = config::record;
        std::filesystem::create_directories(where);
        linux_ports::Storage disk;
        config::RecordFile file(disk, where / "save.cfg");
        file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                    config::integerRecord(record::kFastA, 100), config::integerRecord(record::kSlowA, 100),
                    config::integerRecord(record::kFastB, 100), config::integerRecord(record::kSlowB, 100),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 10),
                    config::integerRecord(record::kFunction, function),
                    config::integerRecord(record::kFrequencyProgram, frequencyProgram),
                    config::textRecord(record::kMemoryPosA + kMemory, "002.50"),
                    config::textRecord(record::kMemoryPosB + kMemory, "001.50"),
                    config::textRecord(record::kMemoryLabel + kMemory, "14.05")});
        file.finish();
    }
    static QStringList arguments(const std::filesystem::path& where) {
        const QString drive = "Z:" + QString::fromStdString(where);
        return {"--directory", drive, "--port", "simulated", "--trace", drive + "/trace"};
    }

    TemporaryFolder folder;
    const std::filesystem::path shack = folder.path() / "shack";
};

TEST_F(WindowsProgramTest, RecallsFromHamRadioDeluxeInItsOwnPrefixAndFindsAllAgain) {
    save(shack, form::kHamRadioDeluxe);
    DdeServer radio(DdeServer::HamRadioDeluxe, "14050000");
    {
        WindowsTwinstep program(arguments(shack));
        ASSERT_EQ(program.ask("click cmdAutoMemConn"), "done");
        radio.line("linked");
        ASSERT_EQ(program.ask("click chkAutoMemOnOff"), "done");
        radio.set("14200000");
        EXPECT_TRUE(program.shows("lblUsoA", "14.05"));
        EXPECT_TRUE(program.shows("Label2", "002.50"));
        EXPECT_TRUE(program.exits());
    }
    WindowsTwinstep again(arguments(shack));
    EXPECT_TRUE(again.shows("lblMem1", "14.05"));
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

TEST_F(WindowsProgramTest, FollowsOrbitron) {
    save(shack, form::kNoProgram, form::kSatelliteRotor);
    DdeServer orbitron(DdeServer::Orbitron, "UPDATE AZ123.4 EL45.6");
    WindowsTwinstep program(arguments(shack));
    ASSERT_EQ(program.ask("click cmdConnect"), "done");
    EXPECT_TRUE(program.shows("lblAzRx", "123.4"));
}

TEST_F(WindowsProgramTest, StepsAsOnLinuxWhenN1mmTells) {
    const auto linuxShack = folder.path() / "linux";
    QUdpSocket n1mm;
    constexpr quint16 kPort = 12060;
    const auto hear = [&](const std::function<bool()>& done) {
        return waitFor([&] {
            n1mm.writeDatagram("<RadioInfo><TXFreq>1420000</TXFreq></RadioInfo>", QHostAddress::LocalHost,
                               kPort);
            return done();
        });
    };
    save(shack, form::kN1mmLogger);
    save(linuxShack, form::kN1mmLogger);
    {
        WindowsTwinstep program(arguments(shack));
        program.ask("click cmdAutoMemConn");
        program.ask("click chkAutoMemOnOff");
        EXPECT_TRUE(hear([&] { return program.ask("text Label8") == "001.50"; }));
        EXPECT_TRUE(program.shows("Label2", "002.50"));
        EXPECT_TRUE(program.exits());
    }
    {
        Program program({"--directory", QString::fromStdString(linuxShack), "--port", "simulated", "--trace",
                         QString::fromStdString(linuxShack / "trace")});
        program.ask("click cmdAutoMemConn");
        program.ask("click chkAutoMemOnOff");
        EXPECT_TRUE(hear([&] { return program.ask("text Label8") == "001.50"; }));
        EXPECT_TRUE(program.shows("Label2", "002.50"));
        program.ask("open mnuUscita");
        EXPECT_TRUE(program.ends());
    }
    const std::string here = bytesOf(linuxShack / "trace");
    const std::string there = bytesOf(shack / "trace");
    EXPECT_GT(writesTo(here, '0', '3').size(), 50U);
    EXPECT_EQ(writesTo(there, '0', '3'), writesTo(here, '0', '3'));
    EXPECT_EQ(writesTo(there, '4', '7'), writesTo(here, '4', '7'));
}

} // namespace
