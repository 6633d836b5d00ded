#include "config/record_file.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <csignal>
#include <sys/resource.h>

namespace config {
namespace {

class RecordFileTest : public ::testing::Test {
  protected:
    TemporaryFolder folder;
    RecordFile file{folder.path() / "save.cfg"};
};

TEST_F(RecordFileTest, LaysRecordsOutByteByByte) {
    file.write({integerRecord(2, -2), textRecord(1, "ñ1"), byteRecord(3, 200), singleRecord(4, 12.35F),
                booleanRecord(5, true), taggedTextRecord(6, "Home")});
    const std::string expected =
        std::string("\x02\x00\xF1"
                    "1\0\0\0\0\0\0\0\0",
                    12) +
        std::string("\xFE\xFF\0\0\0\0\0\0\0\0\0\0", 12) + std::string("\xC8\0\0\0\0\0\0\0\0\0\0\0", 12) +
        std::string("\x9A\x99\x45\x41\0\0\0\0\0\0\0\0", 12) +
        std::string("\xFF\xFF\0\0\0\0\0\0\0\0\0\0", 12) + std::string("\x08\0\x04\0Home\0\0\0\0", 12);
    EXPECT_EQ(bytesOf(file.path()), expected);
    RecordImage records = file.read();
    EXPECT_EQ(records.text(1), "ñ1");
    EXPECT_EQ(records.integer(2), -2);
    EXPECT_EQ(records.byte(3), 200);
    EXPECT_EQ(records.single(4), 12.35F);
    EXPECT_TRUE(records.boolean(5));
    EXPECT_EQ(records.taggedText(6), "Home");
    EXPECT_EQ(records.integer(899), 0);
    EXPECT_EQ(records.text(900), "");
    EXPECT_TRUE(records.damaged().empty());
}

TEST_F(RecordFileTest, WritesBeyondTheEndLeaveZeros) {
    file.write({integerRecord(10, 1)});
    EXPECT_EQ(bytesOf(file.path()).size(), 120U);
    RecordImage records = file.read();
    EXPECT_EQ(records.text(9), "");
    EXPECT_EQ(records.taggedText(8), "");
    EXPECT_FALSE(records.truncated());
}

TEST_F(RecordFileTest, RefusesWhatARecordCannotHold) {
    EXPECT_NO_THROW(textRecord(1, "&H8000000F"));
    EXPECT_THROW(textRecord(1, "12345678901"), runtime::BadRecordLength);
    EXPECT_NO_THROW(taggedTextRecord(62, "ññññññññ"));
    EXPECT_THROW(taggedTextRecord(62, "123456789"), runtime::BadRecordLength);
}

TEST_F(RecordFileTest, ReadsDamagedRecordsAsFarAsTheyGo) {
    std::ofstream(file.path(), std::ios::binary) << std::string("\xFF\xFF"
                                                                "abcdefghij",
                                                                12)
                                                 << "\x08";
    RecordImage records = file.read();
    EXPECT_EQ(records.text(1), "abcdefghij");
    EXPECT_EQ(records.integer(2), 8);
    EXPECT_TRUE(records.truncated());
    EXPECT_EQ(records.damaged(), std::vector<int>{1});
}

TEST_F(RecordFileTest, AFolderInItsPlaceIsAnErrorOfItsOwn) {
    std::filesystem::create_directory(file.path());
    EXPECT_THROW(file.read(), runtime::FileError);
    EXPECT_THROW(file.write({integerRecord(1, 1)}), runtime::FileError);
}

TEST_F(RecordFileTest, AFullDiskIsAnErrorAndLeavesTheRestAlone) {
    file.write({integerRecord(1, 7)});
    const std::string before = bytesOf(file.path());
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{12, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THROW(file.write({integerRecord(2, 1)}), runtime::FileError);
    EXPECT_THROW(file.copyTo(folder.path() / "no" / "where.cfg"), runtime::FileError);
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(bytesOf(file.path()), before);
}

TEST_F(RecordFileTest, ACopyReplacesOnlyWhenItIsWhole) {
    file.write({integerRecord(1, 7)});
    file.copyTo(folder.path() / "home.cfg");
    file.write({integerRecord(1, 8)});
    EXPECT_THROW(file.replaceBy(folder.path() / "missing.cfg"), runtime::FileError);
    std::ofstream(folder.path() / "long.cfg") << std::string(20000, 'x');
    EXPECT_THROW(file.replaceBy(folder.path() / "long.cfg"), runtime::FileError);
    EXPECT_THROW(file.replaceBy(folder.path()), runtime::FileError);
    EXPECT_EQ(file.read().integer(1), 8);
    file.replaceBy(file.path()); // itself
    EXPECT_EQ(file.read().integer(1), 8);
    file.replaceBy(folder.path() / "home.cfg");
    EXPECT_EQ(file.read().integer(1), 7);
    // A copy of a read-only file can be written to.
    std::filesystem::permissions(folder.path() / "home.cfg", std::filesystem::perms::owner_read);
    file.replaceBy(folder.path() / "home.cfg");
    EXPECT_NE(std::filesystem::status(file.path()).permissions() & std::filesystem::perms::owner_write,
              std::filesystem::perms::none);
    file.seal();
    file.write({integerRecord(1, 9)});
    EXPECT_EQ(file.read().integer(1), 7);
}

} // namespace
} // namespace config
