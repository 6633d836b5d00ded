// Where a program finds what it ships with, and where it keeps what is the user's.

#include "platform/qt/data_files.h"
#include "platform/qt/start_folder.h"
#include "ui/command_line.h"

#include <QDir>
#include <fstream>
#include <gmock/gmock.h>

using qt_ports::findDataFile;
using ::testing::HasSubstr;

namespace {

/// An environment variable for the length of a test.
class Variable {
  public:
    Variable(const char* name, const std::optional<QByteArray>& value)
        : name_(name), was_(qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt) {
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(was_); }

  private:
    void set(const std::optional<QByteArray>& value) { value ? qputenv(name_, *value) : qunsetenv(name_); }

    const char* name_;
    std::optional<QByteArray> was_;
};

struct DataFiles : ::testing::Test {
    DataFiles() { std::filesystem::remove_all(root); }
    ~DataFiles() override { std::filesystem::remove_all(root); }

    /// Writes the file in this folder, and tells its path as findDataFile gives it.
    std::string put(const std::filesystem::path& folder) const {
        std::filesystem::create_directories(folder / "docs");
        std::ofstream(folder / "docs/help.html") << "help";
        return std::filesystem::canonical(folder / "docs/help.html");
    }
    /// What a program in this folder finds; "" for nothing.
    std::string found(const std::string& program, const std::filesystem::path& source) const {
        const auto path = findDataFile(source, "docs/help.html", QString::fromStdString(root / program));
        return path ? path->toStdString() : "";
    }

    std::filesystem::path root = std::filesystem::path(::testing::TempDir()) / "data_files";
};

} // namespace

TEST_F(DataFiles, OfAnInstalledProgramAreItsOwnAndOtherwiseThoseOfTheSources) {
    std::filesystem::create_directories(root / "usr/bin");
    std::filesystem::create_directories(root / "project/build");
    EXPECT_EQ(found("usr/bin", ""), "");
    EXPECT_EQ(found("usr/bin", root / "project"), "");

    const std::string source = put(root / "project");
    EXPECT_EQ(found("project/build", root / "project"), source);
    const std::string installed = put(root / "usr/share/twinstep");
    EXPECT_EQ(found("usr/bin", root / "project"), installed);
    EXPECT_EQ(found("usr/bin", ""), installed);

    std::filesystem::remove(installed);
    std::filesystem::create_directory(installed);
    EXPECT_EQ(found("usr/bin", ""), "") << "a folder is no page";
}

TEST(UserData, LiesWhereTheDesktopKeepsIt) {
    const Variable home("HOME", "/home/operator");
    const std::vector<std::pair<std::optional<QByteArray>, std::string>> cases = {
        {std::nullopt, "/home/operator/.local/share/twinstep"},
        {"", "/home/operator/.local/share/twinstep"},
        {"relative", "/home/operator/.local/share/twinstep"},
        {"/data/of mine/", "/data/of mine/twinstep"},
    };
    for (const auto& [given, expected] : cases) {
        const Variable data("XDG_DATA_HOME", given);
        EXPECT_EQ(qt_ports::userDataFolder(), expected);
        const auto asked = ui::parseCommandLine({"twinstep", "--user-data"});
        ASSERT_TRUE(asked.options) << asked.text;
        EXPECT_EQ(asked.options->directory, expected);
        const auto notAsked = ui::parseCommandLine({"twinstep"});
        ASSERT_TRUE(notAsked.options) << notAsked.text;
        EXPECT_EQ(notAsked.options->directory, "");
    }
}

TEST(UserData, AndANamedFolderExcludeEachOther) {
    const auto both = ui::parseCommandLine({"twinstep", "--user-data", "--directory", "shack"});
    EXPECT_FALSE(both.options);
    EXPECT_GT(both.exitCode, 0);
    EXPECT_THAT(both.text, HasSubstr("--directory and --user-data"));
}
