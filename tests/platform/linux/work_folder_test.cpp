#include "platform/linux/work_folder.h"
#include "runtime/errors.h"

#include <fstream>
#include <gmock/gmock.h>
#include <optional>

using linux_ports::WorkFolder;
using ::testing::HasSubstr;

namespace {

std::string whyRefused(const std::filesystem::path& path) {
    try {
        const WorkFolder folder(path);
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
    return "not refused";
}

struct Folder : ::testing::Test {
    Folder() { std::filesystem::remove_all(root); }
    ~Folder() override { std::filesystem::remove_all(root); }
    std::filesystem::path root =
        std::filesystem::path(::testing::TempDir()) /
        (std::string("folder_") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

} // namespace

TEST_F(Folder, IsCreatedHeldAloneAndLeftEmpty) {
    const auto path = root / "shack" / "tuner";
    std::optional<WorkFolder> first(path);
    EXPECT_TRUE(first->held());
    EXPECT_TRUE(first->path().is_absolute());
    EXPECT_THAT(whyRefused(path), HasSubstr("another Twinstep"));
    EXPECT_EQ(whyRefused(root / "shack"), "not refused");
    first.reset();
    EXPECT_EQ(whyRefused(path), "not refused");
    EXPECT_TRUE(std::filesystem::is_empty(path));
}

TEST_F(Folder, IsRefusedWhereNothingCanBeWritten) {
    std::filesystem::create_directories(root);
    std::ofstream(root / "file") << "in the way";
    EXPECT_THAT(whyRefused(root / "file"), HasSubstr("file\" cannot be"));
    EXPECT_THAT(whyRefused(root / "file" / "below"), HasSubstr("cannot be created"));
    EXPECT_THAT(whyRefused("/proc/1"), HasSubstr("cannot be written"));
}
