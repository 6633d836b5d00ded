#include "platform/linux/storage.h"
#include "runtime/number.h"
#include "tests/wine/station_window.h"

#include <QProcess>
#include <cmath>

namespace {

/// The program as a user starts it, in a process of its own, with a hand on its buttons.
class Program {
  public:
    explicit Program(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_PLUGIN_PATH", TWINSTEP_PLUGINS);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "hand");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process_.setProcessEnvironment(environment);
        process_.start(TWINSTEP_PROGRAM, arguments);
        process_.waitForStarted();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { process_.kill(), process_.waitForFinished(); }

    /// Gives the hand an order and returns its answer; empty when there is none in time.
    std::string ask(const std::string& order) {
        process_.write((order + '\n').c_str());
        waitFor([this] { return process_.canReadLine(); });
        return process_.readLine().chopped(1).toStdString();
    }
    ::testing::AssertionResult shows(const std::string& label, const std::string& expected) {
        std::string text;
        if (waitFor([&] { return (text = ask("text " + label)) == expected; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << label << " shows \"" << text << "\"";
    }

  private:
    QProcess process_;
};

TEST(Program, HearsTheStationThroughItsOption) {
    namespace record = config::record;
    constexpr int kMemory = 1;
    const TemporaryFolder folder;
    linux_ports::Storage disk;
    config::RecordFile file(disk, folder.path() / "save.cfg");
    file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                config::integerRecord(record::kFastA, 1000), config::integerRecord(record::kSlowA, 1000),
                config::integerRecord(record::kFastB, 1000), config::integerRecord(record::kSlowB, 1000),
                config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 10),
                config::integerRecord(record::kFunction, form::kCoilTuner),
                config::integerRecord(record::kFrequencyProgram, form::kLogger32),
                config::textRecord(record::kMemoryPosA + kMemory, "002.50"),
                config::textRecord(record::kMemoryPosB + kMemory, "001.50"),
                config::textRecord(record::kMemoryLabel + kMemory, "14.05")});
    file.finish();

    const int port = freePort();
    Bridge bridge(port);
    LoggerWindow logger;
    Program program({"--directory", QString::fromStdString(folder.path()), "--port", "simulated", "--bridge",
                     "127.0.0.1:" + QString::number(port)});
    bridge.lineWith(" is twinstep ");
    ASSERT_EQ(program.ask("click cmdAutoMemConn"), "done");
    logger.line("subscribed ");
    ASSERT_EQ(program.ask("click chkAutoMemOnOff"), "done");
    logger.tell("frequency 14200000");
    EXPECT_TRUE(program.shows("lblLog32DataM", "14.200.000"));
    EXPECT_TRUE(program.shows("lblUsoA", "14.05"));
    // To within a step, as near as single precision lets them.
    constexpr double kNear = 0.05 * 1.1;
    const auto stands = [&](const char* digits, double position) {
        return waitFor([&] {
            return std::fabs(runtime::leadingNumber(program.ask("text " + std::string(digits))) - position) <
                   kNear;
        });
    };
    EXPECT_TRUE(stands("Label2", 2.5));
    EXPECT_TRUE(stands("Label8", 1.5));
}

} // namespace
