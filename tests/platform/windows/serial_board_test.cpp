#include "platform/firmata/port.h"
#include "platform/windows/outside/serial_port.h"
#include "platform/windows/outside/watchdog.h"
#include "runtime/errors.h"
#include "tests/platform/windows/pump.h"
#include "tests/platform/windows/subject.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <string>

// A board with StandardFirmata on COM5, which tests/windows/run.sh emulates. It writes the levels of its
// outputs, "10000000" for output 1, into the file that TWINSTEP_BOARD_LOG names.

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

constexpr const char* kDevice = "COM5";
constexpr firmata::Wiring kWiring{{2, 3, 4, 5, 6, 7, 8, 9}, 57600, 0};

/// Whether the board comes to show these levels.
bool boardShows(const std::string& levels) {
    const char* const log = std::getenv("TWINSTEP_BOARD_LOG");
    return log && pumpUntil([&] {
               std::ifstream file(log);
               std::string last;
               for (std::string line; std::getline(file, line);)
                   last = line.substr(0, levels.size());
               return last == levels;
           });
}

void waitUntilReady(firmata::Port& port) {
    EXPECT_TRUE(pumpUntil([&] { return port.notReady().empty(); })) << port.notReady();
}

TEST(SerialBoard, TakesPatternsThroughACom) {
    {
        firmata::Port port(std::make_unique<windows_ports::SerialPort>(kDevice, kWiring.baud), kDevice,
                           kWiring);
        waitUntilReady(port);
        port.setBit(0);
        port.setBit(2);
        port.endPattern();
        EXPECT_TRUE(pumpUntil([&] { return port.taken(0xFF); }));
        EXPECT_TRUE(boardShows("10100000"));
    }
    EXPECT_TRUE(boardShows("00000000"));
    EXPECT_THAT([] { windows_ports::SerialPort("COM77", kWiring.baud); },
                ThrowsMessage<runtime::ObjectError>(HasSubstr("COM77: there is no such port")));
}

TEST(SerialBoard, IsSwitchedOffByTheWatchdogThatSharesThePort) {
    const Subject subject("serial");
    ASSERT_TRUE(boardShows("01000000"));
    subject.terminate();
    EXPECT_TRUE(boardShows("00000000"));
}

} // namespace

int runSerialSubject() {
    windows_ports::Watchdog watchdog;
    auto serial = std::make_unique<windows_ports::SerialPort>(kDevice, kWiring.baud);
    watchdog.guardSerial(serial->handle(), firmata::offMessage(kWiring));
    firmata::Port port(std::move(serial), kDevice, kWiring);
    if (!pumpUntil([&] { return port.notReady().empty(); })) return EXIT_FAILURE;
    port.setBit(1);
    port.endPattern();
    Sleep(INFINITE);
    return EXIT_SUCCESS;
}
