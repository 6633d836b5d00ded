#include "platform/linux/storage.h"
#include "runtime/number.h"
#include "tests/wine/linux_program.h"
#include "tests/wine/station_window.h"

#include <cmath>

namespace {

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
