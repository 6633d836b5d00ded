#include "platform/windows/outside/board_library.h"
#include "platform/windows/outside/direct_port.h"
#include "platform/windows/outside/work_folder.h"
#include "runtime/errors.h"
#include "tests/desk.h"
#include "tests/platform/windows/fake_library.h"
#include "tests/platform/windows/pump.h"

#include <fstream>
#include <gmock/gmock.h>

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

using windows_ports::BoardLibrary;
using windows_ports::DirectPort;
using windows_ports::Library;

TEST(DirectPort, WritesSingleBitsThroughTheLibraryAndKeepsTheOthers) {
    FakeDevices& devices = FakeDevices::instance();
    devices.port = 0xF5;
    DirectPort port(0x37C);
    EXPECT_EQ(devices.port, 0xF5); // the lines keep their levels
    port.setBit(1);
    EXPECT_EQ(devices.port, 0xF7);
    port.clearBit(0);
    EXPECT_EQ(devices.port, 0xF6);
    EXPECT_EQ(devices.address, 0x37C);
    EXPECT_TRUE(port.taken(0xFF));
}

TEST(DirectPort, WithoutItsDriverIsRefusedWithTheRemedy) {
    FakeDevices& devices = FakeDevices::instance();
    devices.driverRuns = 0;
    EXPECT_THAT([] { DirectPort(0x378); }, ThrowsMessage<runtime::ObjectError>(
                                               AllOf(HasSubstr("0x378"), HasSubstr("as administrator"))));
    devices.driverRuns = 1;
}

TEST(UsersLibrary, IsRefusedByWhatIsWrongWithIt) {
    const auto folder = windows_ports::programFolder();
    EXPECT_THAT([] { Library("nowhere.dll"); },
                ThrowsMessage<runtime::ObjectError>(
                    AllOf(HasSubstr("nowhere.dll is missing"), HasSubstr(folder.string()))));
    // The same library, said to be for 32-bit processors: the field behind the signature that byte 0x3C
    // points to.
    std::string bytes = bytesOf(folder / DirectPort::kLibrary);
    const auto header = static_cast<std::size_t>(static_cast<unsigned char>(bytes.at(0x3C)));
    bytes.replace(header + 4, 2, "\x4C\x01");
    const auto narrow = folder / "narrow.dll";
    std::ofstream(narrow, std::ios::binary) << bytes;
    EXPECT_THAT([] { Library("narrow.dll"); },
                ThrowsMessage<runtime::ObjectError>(HasSubstr("no 64-bit library")));
    std::filesystem::remove(narrow);
    const Library library(DirectPort::kLibrary);
    void (*function)() = nullptr;
    EXPECT_THAT([&] { library.find("Missing", function); },
                ThrowsMessage<runtime::ObjectError>(HasSubstr("no function Missing")));
}

TEST(BoardLibrary, SendsTheNewestByteAndEndsWithAllOff) {
    FakeDevices& devices = FakeDevices::instance();
    devices.board = -1;
    std::vector<std::string> events;
    const BoardLibrary::Observer observer{
        .opened = [&](int card) { events.push_back("opened " + std::to_string(card)); },
        .closed = [&] { events.emplace_back("closed"); }};
    BoardLibrary absent(1, observer);
    EXPECT_EQ(absent.openDevice(0), -1);
    BoardLibrary board(2, observer);
    ASSERT_EQ(board.openDevice(0), 2) << board.refusal();
    for (const int outputs : {1, 2, 0xC3})
        board.writeAllDigital(outputs);
    EXPECT_TRUE(pumpUntil([&] { return devices.board == 0xC3 && board.taken(0xFF); }));
    board.closeDevice();
    EXPECT_EQ(devices.board, 0);
    EXPECT_EQ(devices.openBoards, 0);
    EXPECT_EQ(events, (std::vector<std::string>{"opened 2", "closed"}));
}

TEST(WorkFolder, BelongsToOneProgramAndLeavesNothing) {
    const TemporaryFolder folder;
    const auto shack = folder.path() / u8"Ä shack";
    {
        const windows_ports::WorkFolder first(shack);
        EXPECT_TRUE(first.path().is_absolute());
        EXPECT_THAT([&] { windows_ports::WorkFolder second(shack); },
                    ThrowsMessage<runtime::ObjectError>(HasSubstr("in use by another Twinstep")));
    }
    EXPECT_TRUE(std::filesystem::is_empty(shack));
    const windows_ports::WorkFolder again(shack);
}

} // namespace
