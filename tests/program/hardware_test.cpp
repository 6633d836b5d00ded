#include "tests/program/driven_program.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// The program in front of an emulated printer port, with a "twinstep.ini" that a user has left.
struct StoredHardware : ::testing::Test {
    StoredHardware() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        port.emplace(folder / "port");
    }
    ~StoredHardware() override { std::filesystem::remove_all(folder); }

    void store(const std::string& lines) const {
        std::ofstream(folder / "twinstep.ini") << "[hardware]\n" << lines << "[other]\nkept=yes\n";
    }
    std::string stored() const {
        std::ifstream file(folder / "twinstep.ini");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    QStringList arguments(const QStringList& more = {}) const {
        return QStringList{"--directory", QString::fromStdString(folder), "--trace",
                           QString::fromStdString(folder / "trace")} +
               more;
    }
    bool started() const {
        return comesTrue([this] {
            std::ifstream trace(folder / "trace");
            return std::count(std::istreambuf_iterator<char>(trace), {}, '\n') >= 8;
        });
    }

    std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) /
        (std::string("hardware_") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::optional<EmulatedPort> port;
};

} // namespace

TEST_F(StoredHardware, IsUsedUnlessTheCommandLineSaysOtherwise) {
    store("port=/dev/parport0\n");
    {
        DrivenProgram program(*port, arguments());
        ASSERT_TRUE(comesTrue([this] { return port->isOff(); }));
        EXPECT_NE(program.watchdog(), 0);
        program.signal(SIGTERM);
        EXPECT_EQ(program.ends(), 0);
    }
    port->setData(0);
    std::filesystem::remove(folder / "trace");
    DrivenProgram program(*port, arguments({"--port", "simulated"}));
    ASSERT_TRUE(started());
    EXPECT_EQ(program.watchdog(), 0);
    EXPECT_EQ(port->data(), 0);
}

TEST_F(StoredHardware, ThatIsBadIsToldAndTheRestIsUsed) {
    store("port=/dev/parport7\nusb=nonsense\nbridge=shack:7380\n");
    DrivenProgram program(*port, arguments());
    ASSERT_TRUE(started());
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
    const std::string errors = program.errors();
    EXPECT_THAT(errors, HasSubstr("/dev/parport7"));
    EXPECT_THAT(errors, HasSubstr("simulated"));
    EXPECT_THAT(errors, HasSubstr("usb: \"nonsense\""));
    EXPECT_THAT(errors, Not(HasSubstr("bridge:")));
    for (const char* kept : {"port=/dev/parport7\n", "usb=nonsense\n", "bridge=shack:7380\n", "kept=yes\n"})
        EXPECT_THAT(stored(), HasSubstr(kept));
}

TEST_F(StoredHardware, IsTestedExchangedAndKeptInTheDialog) {
    store("port=/dev/parport0\n");
    DrivenProgram program(*port, arguments());
    ASSERT_TRUE(comesTrue([this] { return port->isOff(); }));
    EXPECT_EQ(program.ask("open mnuHardware"), "done");
    EXPECT_EQ(program.ask("click cmdTestB"), "done");
    EXPECT_TRUE(comesTrue([this] { return port->data() == 0xEF; }));
    EXPECT_TRUE(comesTrue([this] { return port->data() == 0xDF; }));
    EXPECT_EQ(program.ask("choose cmbPort Simulated"), "done");
    EXPECT_FALSE(port->claim());
    EXPECT_EQ(program.ask("click cmdSaveHardware"), "done");
    EXPECT_TRUE(comesTrue([this] { return port->isOff() && port->claim(); }));
    EXPECT_TRUE(comesTrue([this] { return stored().find("port=simulated") != std::string::npos; }));
    EXPECT_THAT(stored(), HasSubstr("kept=yes"));
}

TEST_F(StoredHardware, TheLevelHoldsFromTheStartAndTheWatchdogKnowsIt) {
    adoptOrphans();
    store("port=/dev/parport0\ncoils-on=high\n");
    port->setData(0xFF); // all on
    const auto endsAt = [this](DrivenProgram& program, int off) {
        const auto [watchdog, standBy] = program.watchdogs();
        port->setData(0x12);
        program.signal(SIGKILL);
        EXPECT_TRUE(comesTrue([&] { return port->data() == off; }));
        EXPECT_EQ(orphanEnds(watchdog), 0);
        EXPECT_EQ(orphanEnds(standBy), 0);
    };
    {
        DrivenProgram program(*port, arguments());
        ASSERT_TRUE(comesTrue([this] { return port->data() == 0; }));
        EXPECT_EQ(program.ask("open mnuHardware"), "done");
        EXPECT_EQ(program.ask("click cmdTestB"), "done");
        EXPECT_TRUE(comesTrue([this] { return port->data() == 0x10; }));
        endsAt(program, 0);
    }
    DrivenProgram program(*port, arguments());
    ASSERT_TRUE(comesTrue([this] { return port->data() == 0; }));
    EXPECT_EQ(program.ask("open mnuHardware"), "done");
    EXPECT_EQ(program.ask("choose cmbCoilsOn Low: a 0"), "done");
    EXPECT_EQ(program.ask("click cmdSaveHardware"), "done");
    EXPECT_TRUE(comesTrue([this] { return port->data() == 0xFF; }));
    EXPECT_TRUE(comesTrue([this] { return stored().find("coils-on=low") != std::string::npos; }));
    endsAt(program, 0xFF);
}
