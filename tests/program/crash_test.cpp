#include "config/position_slots.h"
#include "config/record_file.h"
#include "config/records.h"
#include "form/shell_panel.h"
#include "platform/linux/storage.h"
#include "runtime/number.h"
#include "tests/program/driven_program.h"

#include <cmath>
#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

namespace record = config::record;

/// A program with both engines set up to move the antenna, at azimuth 90 and elevation 30.
struct Crash : ::testing::Test {
    Crash() {
        linux_ports::Storage disk;
        config::RecordFile(disk, folder / "save.cfg")
            .write({config::integerRecord(record::kFunction, form::kSatelliteRotor),
                    config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 1),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 1),
                    config::integerRecord(record::kSlowA, 1000), config::integerRecord(record::kSlowB, 1000),
                    config::integerRecord(record::kFastA, 1000), config::integerRecord(record::kFastB, 1000),
                    config::singleRecord(record::kAzimuth, 90),
                    config::singleRecord(record::kElevation, 30)});
    }
    ~Crash() override { std::filesystem::remove_all(folder); }

    QStringList arguments() const { return {"--directory", QString::fromStdString(folder)}; }
    bool left() const { return std::filesystem::exists(folder / config::kPositionFile); }

    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "twinstep-XXXXXX").string();
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    EmulatedPort port{folder / "port"};
};

TEST_F(Crash, InMidMoveLosesNoStep) {
    constexpr int kSteps = 400;
    double stepsOfBoth = 0;
    {
        DrivenProgram program(port, arguments());
        ASSERT_TRUE(comesTrue([this] { return port.isOff() && left(); }));
        const auto before = port.state().writes;
        // Every step writes the four outputs of its engine.
        const auto steps = [&] { return static_cast<double>(port.state().writes - before) / 4; };
        ASSERT_TRUE(program.runs(port, true)) << program.errors();
        ASSERT_TRUE(comesTrue([&] { return steps() > kSteps; }));
        program.signal(SIGKILL);
        program.ends();
        ASSERT_TRUE(comesTrue([this] { return port.isOff() && port.claim(); }));
        port.release();
        stepsOfBoth = steps();
    }
    ASSERT_TRUE(left());
    DrivenProgram program(port, arguments());
    std::string box;
    ASSERT_TRUE(comesTrue([&] { return (box = program.ask("box")) != "none"; }));
    EXPECT_THAT(box, HasSubstr("did not end in order"));
    EXPECT_EQ(program.ask("accept"), "done");
    const auto shown = [&](const char* label) {
        return runtime::parseSingle(program.ask(std::string("text ") + label));
    };
    // Two decimals of each, thus two steps; one step cut short; what the watchdogs wrote at the end. The
    // window draws a moment later.
    constexpr double kNear = 4;
    double found = 0;
    EXPECT_TRUE(comesTrue([&] {
        found = (shown("lblAzimut") - 90 + shown("lblElev") - 30) * 200;
        return std::abs(found - stepsOfBoth) <= kNear;
    })) << found
        << " instead of " << stepsOfBoth;
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
    EXPECT_FALSE(left());
}

} // namespace
