#include "platform/linux/position_file.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <csignal>
#include <future>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

struct PositionFileTest : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "positions.dat";
    linux_ports::PositionFile file{path, [](const std::string& why) { ADD_FAILURE() << why; }};
    std::array<std::byte, 1024> bytes{std::byte{'a'}, std::byte{'b'}};
};

TEST_F(PositionFileTest, OutlivesAKilledProcessAndGoesWithAnOrderlyOne) {
    EXPECT_EQ(file.leftOver(), std::nullopt);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto memory = file.create(bytes);
        memory[1023] = std::byte{'z'};
        file.changed();
        ::raise(SIGKILL);
    }
    ::waitpid(child, nullptr, 0);
    const auto left = file.leftOver();
    ASSERT_TRUE(left);
    EXPECT_EQ(left->size(), 1024U);
    EXPECT_EQ(left->substr(0, 2) + left->back(), "abz");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
        << "nothing beside it";

    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_GE(status.st_blocks * 512, 1024) << "allocated, so that a full disk cannot end a step";

    file.create(bytes);
    file.remove();
    EXPECT_EQ(file.leftOver(), std::nullopt);
}

TEST_F(PositionFileTest, FollowsNoLinkAndTouchesNothingBehindOne) {
    const auto victim = folder.path() / "victim";
    std::ofstream(victim) << "precious";
    std::filesystem::create_symlink(victim, path);
    std::filesystem::create_symlink(victim, folder.path() / "positions.dat.new");
    EXPECT_THROW(file.leftOver(), runtime::FileError);
    file.create(bytes);
    EXPECT_EQ(bytesOf(victim), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(path));
    EXPECT_EQ(bytesOf(path).size(), 1024U);
}

TEST_F(PositionFileTest, WhatIsNoPlainFileIsNamedWithoutWaiting) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT([this] { file.leftOver(); },
                ThrowsMessage<runtime::FileError>(HasSubstr("\"positions.dat\" is no plain file")));
    file.create(bytes); // takes its place
    EXPECT_EQ(file.leftOver()->size(), 1024U);
    file.remove();

    std::filesystem::create_directory(path);
    EXPECT_THROW(file.leftOver(), runtime::FileError);
    EXPECT_THAT([this] { file.create(bytes); },
                ThrowsMessage<runtime::FileError>(HasSubstr("\"positions.dat\" cannot be written")));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "positions.dat.new"));
    std::filesystem::remove(path);

    std::ofstream(path).close();
    std::filesystem::resize_file(path, 1'000'000'000);
    EXPECT_LE(file.leftOver()->size(), 4096U);
}

TEST_F(PositionFileTest, SaysThatAnotherProgramHasTakenItAway) {
    std::promise<std::string> heard;
    linux_ports::PositionFile watched{path, [&](const std::string& why) { heard.set_value(why); }};
    watched.create(bytes);
    std::filesystem::remove(path);
    EXPECT_THAT(heard.get_future().get(), HasSubstr("\"positions.dat\" was removed"));
}

} // namespace
