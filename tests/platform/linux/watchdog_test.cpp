#include "event_loop.h"
#include "platform/linux/watchdog.h"
#include "runtime/errors.h"
#include "tests/emulated_port/emulated_port.h"
#include "tests/program/driven_program.h"

#include <fstream>
#include <gmock/gmock.h>
#include <optional>
#include <sys/ptrace.h>
#include <sys/stat.h>

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

using linux_ports::FileDescriptor;

/// What the board receives for "all off": report number, command, digital byte, two analogue bytes, padding.
const std::string kBoardOff("\0\5\0\0\0\0\0\0\0", 9);

/// A variable of the environment that the watchdog inherits.
class Variable {
  public:
    Variable(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        ::setenv(name, value.c_str(), 1);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }

  private:
    const char* name_;
    std::optional<std::string> before_;
};

struct WatchdogTest : ::testing::Test {
    WatchdogTest() { adoptOrphans(); }
    ~WatchdogTest() override { std::filesystem::remove_all(folder); }

    /// To be ended before the watchdog.
    [[nodiscard]] auto watch(linux_ports::Watchdog& watchdog) {
        return watchdog.watch(
            loop.watcher, [this] { ++trips; }, [this](const std::string& why) { unguarded.push_back(why); });
    }
    /// The watchdog and the one that stands by, which is younger.
    static std::vector<pid_t> guards(pid_t controller = ::getpid()) { return childrenOf(controller); }
    static void killGuards() {
        for (const pid_t guard : guards())
            ::kill(guard, SIGKILL);
    }
    /// There are two again, and this one is not among them.
    static bool replaced(pid_t before) {
        return EventLoop::until(
            [&] {
                const auto now = guards();
                return now.size() == 2 && now.front() != before && now.back() != before;
            },
            15000);
    }
    std::string boardBytes() const {
        std::ifstream file(board, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::string failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const runtime::ObjectError& error) {
            return error.what();
        }
        return "none";
    }

    /// A controller in a process of its own that guards both devices and then does no more than `then`; its
    /// process and those of its watchdogs.
    std::pair<pid_t, std::vector<pid_t>> startController(const std::function<void()>& then = ::pause) {
        int ready[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ready, O_CLOEXEC), 0);
        const pid_t controller = ::fork();
        if (controller == 0) {
            linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
            watchdog.guardPort(descriptor.get(), 0xFF);
            watchdog.guardBoard(board);
            if (::write(ready[1], "x", 1) == 1) then();
            std::_Exit(1);
        }
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
        EXPECT_THAT(guards(controller), SizeIs(2));
        return {controller, guards(controller)};
    }
    static void allEnd(const std::vector<pid_t>& watchdogs) {
        for (const pid_t watchdog : watchdogs)
            EXPECT_EQ(orphanEnds(watchdog), 0);
    }
    static void kill(pid_t controller) {
        ::kill(controller, SIGKILL);
        ::waitpid(controller, nullptr, 0);
    }

    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "twinstep-XXXXXX").string();
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    EmulatedPort port{folder / "port"};
    std::string board =
        folder / "hidraw0"; // a file keeps what is written to it, each watchdog from its start
    Variable preload{"LD_PRELOAD", TWINSTEP_EMULATED_PORT};
    Variable emulated{"EMULATED_PORT", port.path()};
    FileDescriptor descriptor{::open(port.path().c_str(), O_RDWR | O_CLOEXEC)};

    EventLoop loop;
    int trips = 0;
    std::vector<std::string> unguarded;
};

} // namespace

TEST_F(WatchdogTest, NamesWhatCannotBeGuarded) {
    EXPECT_THAT(failureOf([] { linux_ports::Watchdog watchdog("/nonexistent/dog"); }),
                AllOf(HasSubstr("/nonexistent/dog"), HasSubstr("No such file")));
    EXPECT_THAT(failureOf([] { linux_ports::Watchdog watchdog("/bin/true"); }),
                AllOf(HasSubstr("/bin/true"), HasSubstr("ends at once")));

    linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
    std::ofstream(board).close();
    watchdog.guardPort(descriptor.get(), 0xFF);
    watchdog.guardBoard(board);
    const FileDescriptor noPort(::open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_THAT(failureOf([&] { watchdog.guardPort(noPort.get(), 0xFF); }), HasSubstr("the printer port"));
    EXPECT_THAT(failureOf([&] { watchdog.guardPortAddress(0x10378, 0xFF); }), HasSubstr("0x10378"));
    EXPECT_THAT(failureOf([&] { watchdog.guardBoard(folder / "hidraw9"); }),
                AllOf(HasSubstr("hidraw9"), HasSubstr("No such file")));
    // What was guarded before still is.
    EXPECT_EQ(boardBytes(), "");
    const pid_t child = guards().front();
    watchdog.beat(true);
    EXPECT_TRUE(comesTrue([&] { return port.isOff() && boardBytes().starts_with(kBoardOff); }));
    EXPECT_EQ(port.state().writer, child);
}

TEST_F(WatchdogTest, TheEndOfTheControllerSwitchesBothPathsOff) {
    std::ofstream(board).close();
    const auto [controller, watchdogs] = startController();
    EXPECT_FALSE(port.isOff());
    kill(controller);
    allEnd(watchdogs);
    EXPECT_TRUE(port.isOff());
    EXPECT_EQ(boardBytes(), kBoardOff);
}

TEST_F(WatchdogTest, ACrashSwitchesOffBeforeTheProcessHasEnded) {
    std::ofstream(board).close();
    const auto [controller, watchdogs] = startController([] {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        std::abort();
    });
    // Traced, it stands still when the signal comes, and once more when the signal shall end it.
    int status = 0;
    ::waitpid(controller, &status, 0);
    ASSERT_TRUE(WIFSTOPPED(status) && WSTOPSIG(status) == SIGABRT);
    EXPECT_FALSE(port.isOff());
    ::ptrace(PTRACE_CONT, controller, nullptr, SIGABRT);
    ::waitpid(controller, &status, 0);
    ASSERT_TRUE(WIFSTOPPED(status) && WSTOPSIG(status) == SIGABRT);
    EXPECT_TRUE(comesTrue([this] { return port.isOff() && boardBytes() == kBoardOff; }));
    kill(controller);
    allEnd(watchdogs);
}

TEST_F(WatchdogTest, ABoardThatHangsDelaysNeitherThePortNorItsRelease) {
    // A pipe that nobody reads keeps its writers.
    ASSERT_EQ(::mkfifo(board.c_str(), 0600), 0);
    const FileDescriptor pipe(::open(board.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    const std::string block(4096, 'x');
    while (::write(pipe.get(), block.data(), block.size()) > 0) {
    }
    ASSERT_EQ(::flock(descriptor.get(), LOCK_EX | LOCK_NB), 0);
    const auto [controller, watchdogs] = startController();
    descriptor = FileDescriptor();
    ASSERT_FALSE(port.claim());
    kill(controller);
    EXPECT_TRUE(comesTrue([&] { return port.isOff(); }, 1000));
    EXPECT_TRUE(comesTrue([&] { return port.claim(); }, 1000));
    allEnd(watchdogs);
}

TEST_F(WatchdogTest, SilenceSwitchesOffOnlyWhileAnEngineRuns) {
    constexpr int kMoreThanTwoSeconds = 2400;
    std::ofstream(board).close();
    linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
    watchdog.guardPort(descriptor.get(), 0xFF);
    watchdog.guardBoard(board);
    const auto watching = watch(watchdog);
    watchdog.beat(true);
    watchdog.beat(false);
    EventLoop::runFor(kMoreThanTwoSeconds);
    EXPECT_FALSE(port.isOff()) << "coils may hold a standing engine";
    EXPECT_EQ(trips, 0);

    watchdog.beat(true);
    EXPECT_TRUE(EventLoop::until([this] { return trips > 0; }));
    EXPECT_TRUE(port.isOff());
    EXPECT_TRUE(comesTrue([this] { return boardBytes().starts_with(kBoardOff); }));
    port.setData(0);
    EXPECT_TRUE(comesTrue([this] { return port.isOff(); })) << "a loop that hangs and writes was not stopped";
    EventLoop::runFor(50);
    EXPECT_EQ(trips, 1);

    watchdog.beat(true);
    EXPECT_TRUE(EventLoop::until([this] { return trips > 1; })) << "it does not watch any longer";
}

TEST_F(WatchdogTest, OneThatSleepsIsReplaced) {
    std::ofstream(board).close();
    {
        linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
        watchdog.guardPort(descriptor.get(), 0xFF);
        watchdog.guardBoard(board);
        const auto watching = watch(watchdog);
        for (const std::size_t which : {0U, 1U}) { // 1: the one that stands by
            const pid_t asleep = guards().at(which);
            ::kill(asleep, SIGSTOP);
            EXPECT_TRUE(EventLoop::until([&] {
                watchdog.beat(false);
                return std::ranges::count(guards(), asleep) == 0;
            }));
            EXPECT_TRUE(replaced(asleep));
        }
        EXPECT_THAT(unguarded, IsEmpty());
        EXPECT_FALSE(port.isOff());
    }
    EXPECT_THAT(guards(), IsEmpty());
    EXPECT_TRUE(port.isOff());
    EXPECT_EQ(boardBytes(), kBoardOff);
}

TEST_F(WatchdogTest, OneThatCannotBeReplacedIsMissedWheneverAnEngineStarts) {
    const auto program = folder / "dog";
    std::filesystem::copy_file(TWINSTEP_WATCHDOG, program);
    linux_ports::Watchdog watchdog(program);
    watchdog.guardPort(descriptor.get(), 0xFF);
    const auto watching = watch(watchdog);
    std::filesystem::remove(program);
    killGuards();
    EXPECT_TRUE(EventLoop::until([this] { return !unguarded.empty(); }));
    EXPECT_THAT(unguarded, ElementsAre(AllOf(HasSubstr(program.string()), HasSubstr("No such file"))));

    watchdog.beat(false);
    EventLoop::runFor(50);
    EXPECT_THAT(unguarded, SizeIs(1));
    watchdog.beat(true);
    EXPECT_TRUE(EventLoop::until([this] { return unguarded.size() == 2; }));

    std::filesystem::copy_file(TWINSTEP_WATCHDOG, program);
    watchdog.beat(true);
    EXPECT_TRUE(EventLoop::until([this] { return trips == 1; })) << "it does not know that an engine runs";
    EXPECT_TRUE(port.isOff());
    EXPECT_THAT(guards(), SizeIs(1)) << "nobody is started to stand by as long as an engine runs";
    watchdog.beat(false);
    EXPECT_TRUE(replaced(0));
}

TEST_F(WatchdogTest, OneThatDiesAgainAndAgainIsGivenUp) {
    linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
    const auto watching = watch(watchdog);
    for (int times = 0; times < 10 && unguarded.empty(); ++times) {
        const pid_t first = guards().front();
        killGuards();
        // Dead ones count until they have been reaped.
        EventLoop::until([&] { return !unguarded.empty() || guards().front() != first; });
    }
    EXPECT_THAT(unguarded, ElementsAre(HasSubstr("again and again")));
}

TEST_F(WatchdogTest, WhatIsForgottenIsFreeAndLeftAlone) {
    std::ofstream(board).close();
    {
        linux_ports::Watchdog watchdog(TWINSTEP_WATCHDOG);
        ASSERT_EQ(::flock(descriptor.get(), LOCK_EX | LOCK_NB), 0);
        watchdog.guardPort(descriptor.get(), 0xFF);
        watchdog.guardBoard(board);
        watchdog.forgetPort();
        watchdog.forgetBoard();
        descriptor = FileDescriptor();
        EXPECT_TRUE(port.claim()) << "the watchdog still holds it";
    }
    EXPECT_FALSE(port.isOff());
    EXPECT_EQ(boardBytes(), "");
}
