#include "platform/linux/storage.h"
#include "platform/qt/settings_file.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <QLockFile>
#include <gmock/gmock.h>
#include <sys/stat.h>

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

constexpr const char* kSection = "hardware";

struct Settings : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "twinstep.ini";
    linux_ports::Storage storage;
    qt_ports::SettingsFile file{storage, path};

    std::ptrdiff_t filesInFolder() const {
        return std::distance(std::filesystem::directory_iterator(folder.path()), {});
    }
};

TEST_F(Settings, AreWrittenBesideWhatOthersHaveThereAndThroughALink) {
    EXPECT_TRUE(file.read(kSection).empty());
    file.write({{kSection, {{"port", "simulated"}, {"usb", "none"}}}});
    EXPECT_EQ(filesInFolder(), 1);
    const auto real = folder.path() / "elsewhere.ini";
    std::filesystem::rename(path, real);
    std::ofstream(real, std::ios::app) << "[other]\nkept=yes\n";
    std::filesystem::permissions(real, std::filesystem::perms(0640));
    std::filesystem::create_symlink(real, path);
    file.write({{kSection, {{"port", "0x378"}}}});
    EXPECT_EQ(file.read(kSection).at("port"), "0x378");
    EXPECT_EQ(file.read(kSection).at("usb"), "none");
    EXPECT_THAT(bytesOf(real), HasSubstr("kept=yes"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(std::filesystem::status(real).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(filesInFolder(), 2);
}

TEST_F(Settings, WhoseLockAnotherProgramHoldsAreRefusedAtOnceAndByName) {
    file.write({{kSection, {{"port", "simulated"}}}});
    const std::string before = bytesOf(path);
    const std::filesystem::path lockPath = path.string() + ".lock";
    const auto isRefused = [&] {
        EXPECT_THAT(
            [&] {
                file.write({{kSection, {{"port", "auto"}}}});
            },
            ThrowsMessage<runtime::FileError>(
                AllOf(HasSubstr("\"twinstep.ini\""), HasSubstr("\"twinstep.ini.lock\""))));
        EXPECT_EQ(file.read(kSection).at("port"), "simulated");
        EXPECT_EQ(bytesOf(path), before);
    };
    {
        QLockFile held(QString::fromStdString(lockPath.string()));
        ASSERT_TRUE(held.tryLock());
        isRefused();
    }
    std::ofstream(lockPath).close(); // left over, by nobody knows whom
    isRefused();
    std::filesystem::remove(lockPath);
    ASSERT_EQ(::mkfifo(lockPath.c_str(), 0600), 0);
    isRefused();
    std::filesystem::remove(lockPath);
    file.write({{kSection, {{"port", "auto"}}}});
    EXPECT_EQ(file.read(kSection).at("port"), "auto");
}

TEST_F(Settings, InWhatIsNoPlainFileOrTooLongAreRefusedWithoutWaiting) {
    const auto isRefused = [&](const char* why) {
        EXPECT_THAT([&] { file.read(kSection); }, ThrowsMessage<runtime::FileError>(HasSubstr(why)));
        EXPECT_THAT(
            [&] {
                file.write({{kSection, {{"port", "auto"}}}});
            },
            ThrowsMessage<runtime::FileError>(HasSubstr(why)));
    };
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    isRefused("\"twinstep.ini\" is no plain file");
    std::filesystem::remove(path);
    std::filesystem::create_symlink("/dev/zero", path);
    isRefused("is no plain file");
    std::filesystem::remove(path);
    std::ofstream(path).close();
    std::filesystem::resize_file(path, 1'000'000'000);
    isRefused("is longer than 1 MB");
}

} // namespace
