#include "platform/linux/storage.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace {

using ::testing::HasSubstr;

class StorageTest : public ::testing::Test {
  protected:
    TemporaryFolder folder;
    linux_ports::Storage storage;

    std::filesystem::path path(const char* name) const { return folder.path() / name; }
    std::string errorOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const runtime::FileError& error) {
            return error.what();
        }
        return "no error";
    }
};

TEST_F(StorageTest, ReadsPlainFilesOfSensibleSizeAndNeverWaits) {
    EXPECT_EQ(storage.read(path("none"), 10), std::nullopt);
    std::ofstream(path("plain")) << "0123456789";
    EXPECT_EQ(storage.read(path("plain"), 10), "0123456789");
    EXPECT_THAT(errorOf([&] { storage.read(path("plain"), 9); }), HasSubstr("\"plain\" cannot be read"));
    std::ofstream(path("huge")).close();
    std::filesystem::resize_file(path("huge"), std::uintmax_t{1} << 30U);
    ASSERT_EQ(::mkfifo(path("fifo").c_str(), 0600), 0);
    std::filesystem::create_directory(path("folder"));
    for (const std::filesystem::path& strange :
         {path("huge"), path("fifo"), path("folder"), std::filesystem::path("/dev/zero")}) {
        EXPECT_THAT(errorOf([&] { storage.read(strange, 1U << 20U); }), HasSubstr("cannot be read"));
        if (strange != path("huge")) {
            EXPECT_THAT(errorOf([&] { storage.write(strange, 0, "x"); }), HasSubstr("cannot be written"));
        }
    }
    // A process's memory at address 0: a plain file whose reading is an input error.
    EXPECT_THAT(errorOf([&] { storage.read("/proc/self/mem", 1U << 20U); }), HasSubstr("Input/output error"));
}

TEST_F(StorageTest, CreatesAnewAndFollowsNoLink) {
    std::ofstream(path("victim")) << "precious";
    std::filesystem::create_symlink(path("victim"), path("link"));
    std::filesystem::create_symlink(path("nowhere"), path("dangling"));
    for (const char* name : {"victim", "link", "dangling"})
        EXPECT_THAT(errorOf([&] { storage.create(path(name), "x"); }), HasSubstr("cannot be created"));
    EXPECT_EQ(bytesOf(path("victim")), "precious");
    EXPECT_FALSE(std::filesystem::exists(path("nowhere")));
    storage.remove(path("link"));
    storage.remove(path("link"));
    storage.create(path("link"), "new");
    storage.write(path("link"), 2, "xt");
    storage.sync(path("link"));
    storage.rename(path("link"), path("victim"));
    EXPECT_EQ(bytesOf(path("victim")), "next");
}

TEST_F(StorageTest, AFullDiskIsAnErrorAndLeavesNoNewFile) {
    storage.create(path("old"), std::string(12, 'o'));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{12, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string made = errorOf([&] { storage.create(path("new"), std::string(24, 'n')); });
    const std::string written = errorOf([&] { storage.write(path("old"), 6, std::string(24, 'n')); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_THAT(made, HasSubstr("\"new\" cannot be created"));
    EXPECT_FALSE(std::filesystem::exists(path("new")));
    EXPECT_THAT(written, HasSubstr("\"old\" cannot be written"));
}

TEST_F(StorageTest, RunsJobsInTurnOnAThreadOfTheirOwn) {
    std::vector<int> order;
    const auto here = std::this_thread::get_id();
    for (int i = 0; i < 3; ++i) {
        storage.later([&, i] {
            EXPECT_NE(std::this_thread::get_id(), here);
            order.push_back(i);
        });
    }
    storage.finish();
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
}

} // namespace
