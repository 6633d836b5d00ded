#include "platform/windows/outside/position_file.h"
#include "platform/windows/outside/storage.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <cstring>
#include <gmock/gmock.h>

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

constexpr std::size_t kLimit = 1024;

TEST(WindowsStorage, KeepsWhatItIsGivenAndRefusesByName) {
    const TemporaryFolder folder;
    windows_ports::Storage storage;
    const auto file = folder.path() / u8"säve.cfg";
    EXPECT_EQ(storage.read(file, kLimit), std::nullopt);
    storage.create(file, "0123456789");
    storage.write(file, 4, "xx");
    storage.write(file, 10, "ab");
    storage.sync(file);
    EXPECT_EQ(storage.read(file, kLimit), "0123xx6789ab");
    const auto other = folder.path() / "other.cfg";
    storage.create(other, "new");
    storage.rename(other, file);
    EXPECT_EQ(storage.read(file, kLimit), "new");
    EXPECT_EQ(storage.read(other, kLimit), std::nullopt);

    const auto throwsFileError = [](const char* words) {
        return ThrowsMessage<runtime::FileError>(HasSubstr(words));
    };
    EXPECT_THAT([&] { storage.create(file, "x"); }, throwsFileError("\"säve.cfg\" cannot be created"));
    EXPECT_THAT([&] { storage.read(file, 2); }, throwsFileError("more than"));
    EXPECT_THAT([&] { storage.write(other, 0, "x"); }, throwsFileError("\"other.cfg\" cannot be written"));
    EXPECT_THAT([&] { storage.read(folder.path(), kLimit); }, throwsFileError("no plain file"));
    storage.remove(file);
    storage.remove(file);
    std::vector<int> order;
    for (int job = 0; job < 3; ++job)
        storage.later([&order, job] { order.push_back(job); });
    storage.finish();
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
}

TEST(WindowsPositionFile, KeepsItsMemoryWithoutAnOrderlyEnd) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "positions.dat";
    const auto neverFails = [](const std::string& why) { ADD_FAILURE() << why; };
    const std::array<std::byte, 8> bytes{std::byte{1}};
    {
        windows_ports::PositionFile file(path, neverFails);
        EXPECT_EQ(file.leftOver(), std::nullopt);
        const auto memory = file.create(bytes);
        ASSERT_EQ(memory.size(), bytes.size());
        std::memcpy(memory.data(), "moved", 5);
        file.changed();
        std::error_code refused;
        EXPECT_FALSE(std::filesystem::remove(path, refused)); // nobody takes it away meanwhile
    }
    windows_ports::PositionFile next(path, neverFails);
    EXPECT_EQ(next.leftOver(), std::string("moved\0\0\0", 8));
    next.create(bytes);
    next.remove();
    EXPECT_EQ(next.leftOver(), std::nullopt);
}

} // namespace
