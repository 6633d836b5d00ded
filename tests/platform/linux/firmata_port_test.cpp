#include "platform/firmata/port.h"
#include "platform/linux/serial_port.h"
#include "runtime/errors.h"
#include "tests/desk.h"
#include "tests/emulated_board/pty_board.h"
#include "tests/program/driven_program.h"

#include <gmock/gmock.h>
#include <grp.h>
#include <sys/file.h>

using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr std::array<int, 8> kPins{2, 3, 4, 5, 6, 7, 8, 9};

struct FirmataPort : ::testing::Test {
    static std::string failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const runtime::ObjectError& error) {
            return error.what();
        }
        return "none";
    }
    auto open(int off = 0) const {
        return std::make_unique<firmata::Port>(
            std::make_unique<linux_ports::SerialPort>(board.device(), 57600), "Arduino",
            firmata::Wiring{kPins, 57600, off});
    }
    static void write(firmata::Port& port, int levels) {
        for (int bit = 0; bit < 8; ++bit)
            (levels >> bit & 1) != 0 ? port.setBit(bit) : port.clearBit(bit);
        port.endPattern();
    }

    TemporaryFolder folder;
    PtyBoard board{folder.path() / "ttyACM0", {.boot = 100ms}};
};

} // namespace

TEST_F(FirmataPort, SetsPatternsAndLeavesAllOff) {
    for (const int off : {0, 255}) {
        auto port = open(off);
        EXPECT_THAT(port->notReady(), HasSubstr("Arduino is starting"));
        ASSERT_TRUE(comesTrue([&] { return port->notReady().empty(); }));
        EXPECT_EQ(board.levels(), off);
        board.takeChanges();
        for (int levels = 1; levels < 256; levels += levels) {
            write(*port, levels);
            ASSERT_TRUE(comesTrue([&] { return port->taken(255); }));
        }
        ASSERT_TRUE(comesTrue([&] { return board.levels() == 128; }));
        port.reset();
        ASSERT_TRUE(comesTrue([&] { return board.levels() == off; }));
        EXPECT_THAT(board.faults(), IsEmpty());
    }
}

TEST_F(FirmataPort, AnUnpluggedOrSilentBoardThrows) {
    auto port = open();
    ASSERT_TRUE(comesTrue([&] { return port->notReady().empty(); }));
    board.unplug();
    ASSERT_TRUE(comesTrue([&] { return failureOf([&] { port->taken(255); }) != "none"; }));
    EXPECT_THAT(failureOf([&] { write(*port, 1); }), AllOf(HasSubstr("Arduino: "), HasSubstr("unplugged")));
    port.reset();
    board.plugIn();
    port = open();
    ASSERT_TRUE(comesTrue([&] { return port->notReady().empty(); }));
    write(*port, 1);
    board.setMute(true);
    ASSERT_TRUE(comesTrue([&] { return failureOf([&] { port->taken(255); }) != "none"; }));
    EXPECT_THAT(failureOf([&] { port->taken(255); }), HasSubstr("has not answered for a second"));
    EXPECT_TRUE(comesTrue([&] { return board.levels() == 0; })) << "it may still listen";
}

TEST_F(FirmataPort, KeepsItsDeviceOpenAfterAFailure) {
    // The watchdog is handed the same descriptor when it is replaced.
    auto serial = std::make_unique<linux_ports::SerialPort>(board.device(), 57600);
    const int descriptor = serial->descriptor();
    const std::string device = std::filesystem::canonical(board.device());
    firmata::Port port(std::move(serial), "Arduino", {kPins, 57600, 0});
    ASSERT_TRUE(comesTrue([&] { return port.notReady().empty(); }));
    board.setMute(true);
    ASSERT_TRUE(comesTrue([&] { return failureOf([&] { port.taken(255); }) != "none"; }));
    ASSERT_TRUE(comesTrue([&] { return board.levels() == 0; }));
    std::this_thread::sleep_for(50ms); // the port's thread ends
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)), device);
}

TEST_F(FirmataPort, ADeviceThatCannotBeHadIsNamed) {
    const auto why = [](const std::string& device, int baud = 57600) {
        return failureOf([&] { linux_ports::SerialPort port(device, baud); });
    };
    EXPECT_THAT(why("/dev/ttyACM99"), AllOf(HasSubstr("/dev/ttyACM99: "), HasSubstr("plug the board in")));
    EXPECT_THAT(why("/dev/null"), HasSubstr("not a serial device"));
    EXPECT_THAT(why(board.device(), 12345), HasSubstr("12345 baud"));
    const linux_ports::FileDescriptor other(::open(board.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
    EXPECT_THAT(why(board.device()), HasSubstr("in use by another program"));

    // Without the right, as an ordinary user, in a process of its own.
    const std::string device = folder.path() / "ttyACM1";
    std::ofstream(device).close();
    const group* owner = ::getgrnam("dialout");
    ASSERT_TRUE(owner && ::chown(device.c_str(), 0, owner->gr_gid) == 0) << "needs root";
    std::filesystem::permissions(device, std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    const pid_t child = ::fork();
    if (child == 0) {
        const bool ordinary = ::setuid(65534) == 0;
        ::_exit(ordinary && why(device).find("sudo adduser $USER dialout") != std::string::npos ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}
