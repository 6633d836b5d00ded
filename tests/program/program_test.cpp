#include "app/version.h"
#include "tests/program/driven_program.h"

#include <QProcess>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

/// The program as a user starts it, in a process of its own.
class Twinstep {
  public:
    explicit Twinstep(const QStringList& arguments, const QString& platform = "offscreen",
                      const EmulatedPort* port = nullptr) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "HOME"}) {
            environment.remove(display);
        }
        if (!platform.isEmpty()) environment.insert("QT_QPA_PLATFORM", platform);
        if (port) {
            environment.insert("LD_PRELOAD", TWINSTEP_EMULATED_PORT);
            environment.insert("EMULATED_PORT", QString::fromStdString(port->path()));
        }
        process_.setProcessEnvironment(environment);
        process_.start(TWINSTEP_PROGRAM, arguments);
        process_.waitForStarted();
    }
    Twinstep(const Twinstep&) = delete;
    Twinstep& operator=(const Twinstep&) = delete;
    ~Twinstep() { process_.kill(), process_.waitForFinished(); }

    void signal(int number) const { ::kill(static_cast<pid_t>(process_.processId()), number); }
    /// The exit code; -1 when it does not end in time, or crashes.
    int ends() {
        const bool ended = process_.waitForFinished(10000);
        return ended && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
    }
    std::string output() { return process_.readAllStandardOutput().toStdString(); }
    std::string errors() { return process_.readAllStandardError().toStdString(); }

  private:
    QProcess process_;
};

struct Program : ::testing::Test {
    Program() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~Program() override { std::filesystem::remove_all(folder); }

    std::vector<std::string> trace() const {
        std::ifstream file(folder / "trace");
        std::vector<std::string> accesses;
        for (std::string line; std::getline(file, line);)
            accesses.push_back(line.substr(line.find(' ') + 1));
        return accesses;
    }
    /// The start has written all eight outputs: the program runs.
    bool runs() const {
        return comesTrue([&] { return trace().size() >= 8; });
    }
    QStringList arguments(const QStringList& more = {}) const {
        return QStringList{"--directory", QString::fromStdString(folder / "shack"), "--trace",
                           QString::fromStdString(folder / "trace")} +
               more;
    }

    std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) /
        (std::string("program_") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

} // namespace

TEST_F(Program, TellsItsVersionAndOptionsWithoutADisplay) {
    Twinstep version({"--version"}, {});
    EXPECT_EQ(version.ends(), 0);
    EXPECT_EQ(version.output(), "twinstep " + std::string(app::kVersion) + "\n");

    Twinstep help({"--help"}, {});
    EXPECT_EQ(help.ends(), 0);
    const std::string text = help.output();
    for (const char* option :
         {"--directory", "--port", "--usb", "--trace", "--n1mm-listen", "--version", "--help"}) {
        EXPECT_THAT(text, HasSubstr(option));
    }
}

TEST_F(Program, SaysInOneLineWhatIsWrongAndStartsNothing) {
    const std::vector<std::pair<QStringList, std::string>> cases = {
        {{"--port", "parallel"}, "parallel"},
        {{"--port", "/dev/parport9"}, "/dev/parport9"},
        {{"--usb", "velleman"}, "velleman"},
        {{"--n1mm-listen", "localhost"}, "localhost"},
        {{"--rigctld", "shack:0"}, "--rigctld: \"shack:0\""},
        {{"--trace", "/"}, "trace file \"/\""},
        {{"--trace", ""}, "--trace"},
        {{"--trace", QString::fromStdString(folder / "save.cfg")}, "\"save.cfg\", which the program keeps"},
        {{"--trace", "/dev/null"}, "trace file \"/dev/null\" is no plain file"},
        {{"--directory", "/proc/1"}, "/proc/1"},
        {{"--directory", "/dev/null"}, "/dev/null"},
        {{"--directory", ""}, "--directory"},
        {{"--directory"}, "directory"},
        {{"save.cfg"}, "save.cfg"},
        {{"--fast"}, "fast"},
    };
    for (const auto& [wrong, expected] : cases) {
        Twinstep program(QStringList{"--directory", QString::fromStdString(folder)} + wrong);
        EXPECT_GT(program.ends(), 0) << expected;
        const std::string errors = program.errors();
        EXPECT_THAT(errors, AllOf(StartsWith("twinstep: "), HasSubstr(expected)));
        EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));

    Twinstep blind(arguments(), {});
    EXPECT_GT(blind.ends(), 0);
    const std::string errors = blind.errors();
    EXPECT_THAT(errors, HasSubstr("no display"));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST_F(Program, EndsOnSignalsWithTheOutputsOffAndItsStateSaved) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::filesystem::remove(folder / "trace");
        Twinstep program(arguments({"--port", "simulated"}));
        ASSERT_TRUE(runs());
        EXPECT_EQ(std::filesystem::file_size(folder / "shack" / "save.cfg") > 0, signal != SIGTERM)
            << "the first start leaves the file empty";
        program.signal(signal);
        EXPECT_EQ(program.ends(), 0);
        EXPECT_GT(std::filesystem::file_size(folder / "shack" / "save.cfg"), 0u);
        auto accesses = trace();
        ASSERT_GE(accesses.size(), 16u);
        accesses.erase(accesses.begin(), accesses.end() - 8);
        EXPECT_THAT(accesses, ElementsAre("port 4 1", "port 2 1", "port 3 1", "port 1 1", "port 8 1",
                                          "port 6 1", "port 7 1", "port 5 1"));
    }
}

TEST_F(Program, EndsOnASignalWhileABoxIsOpen) {
    std::filesystem::create_directory(folder / "shack");
    std::ofstream(folder / "shack" / "save.cfg") << "not a record file";
    DrivenProgram program(EmulatedPort(folder / "port"), arguments());
    ASSERT_TRUE(comesTrue([&] { return program.ask("box") != "none"; }));
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
}

TEST_F(Program, ASecondOneInTheSameFolderIsRefused) {
    Twinstep first(arguments({"--port", "simulated"}));
    ASSERT_TRUE(runs());
    Twinstep second({"--directory", QString::fromStdString(folder / "shack")});
    EXPECT_GT(second.ends(), 0);
    EXPECT_THAT(second.errors(), HasSubstr("another Twinstep"));
    Twinstep elsewhere({"--version"});
    EXPECT_EQ(elsewhere.ends(), 0);
    first.signal(SIGTERM);
    EXPECT_EQ(first.ends(), 0);
}

TEST_F(Program, TakesThePrinterPortThatIsThere) {
    EmulatedPort port(folder / "port");
    Twinstep program(arguments(), "offscreen", &port);
    ASSERT_TRUE(runs());
    EXPECT_FALSE(port.claim());
    EXPECT_TRUE(port.isOff());
    port.setData(0);
    program.signal(SIGTERM);
    EXPECT_EQ(program.ends(), 0);
    EXPECT_TRUE(port.isOff());
    EXPECT_TRUE(port.claim());
    EXPECT_THAT(program.errors(), Not(HasSubstr("twinstep:")));
}

TEST_F(Program, SimulatesOnlyAPortThatNobodyNamed) {
    EmulatedPort port(folder / "port");
    ASSERT_TRUE(port.claim()); // by another driver
    {
        Twinstep program(arguments(), "offscreen", &port);
        ASSERT_TRUE(runs());
        program.signal(SIGTERM);
        EXPECT_EQ(program.ends(), 0);
        EXPECT_THAT(program.errors(), AllOf(HasSubstr("/dev/parport0"), HasSubstr("simulated")));
    }
    Twinstep named(arguments({"--port", "/dev/parport0"}), "offscreen", &port);
    EXPECT_GT(named.ends(), 0);
    EXPECT_THAT(named.errors(), HasSubstr("another driver"));
}
