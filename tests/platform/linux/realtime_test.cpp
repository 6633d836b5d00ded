#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QThread>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <optional>
#include <sched.h>
#include <unistd.h>

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr int kRoot = 0, kNobody = 65534;
constexpr int kLittle = 8; // megabytes that may be locked, as Debian has it
constexpr int kMayNotSetLimits = 77;

/// A bus of its own in the place of the system's, on which RealtimeKit is played. It raises threads as the
/// real one does, with the rights of the tests.
class PlayedRealtimeKit {
  public:
    PlayedRealtimeKit() {
        std::string name = std::filesystem::temp_directory_path() / "twinstep-bus-XXXXXX";
        folder_ = ::mkdtemp(name.data());
        // Any user may come to it.
        std::filesystem::permissions(folder_, std::filesystem::perms::all);
        const std::string address = "unix:path=" + (folder_ / "bus").string();
        std::ofstream(folder_ / "bus.conf")
            << "<busconfig><type>system</type><listen>" << address
            << "</listen><policy context='default'><allow user='*'/><allow own='*'/>"
               "<allow send_destination='*'/><allow receive_sender='*'/></policy></busconfig>";
        daemon_.start("dbus-daemon", {"--nofork", "--nopidfile", "--print-address", "--config-file",
                                      QString::fromStdString(folder_ / "bus.conf")});
        if (!daemon_.waitForReadyRead()) throw std::runtime_error("dbus-daemon does not start");
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
        service_.moveToThread(&thread_);
        thread_.start();
    }
    PlayedRealtimeKit(const PlayedRealtimeKit&) = delete;
    PlayedRealtimeKit& operator=(const PlayedRealtimeKit&) = delete;
    ~PlayedRealtimeKit() {
        QDBusConnection::disconnectFromBus(kConnection);
        thread_.quit();
        thread_.wait();
        ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
        daemon_.kill();
        daemon_.waitForFinished();
        std::filesystem::remove_all(folder_);
    }

    /// Until then nobody answers on the bus.
    void open() {
        auto bus = QDBusConnection::connectToBus(QString::fromLocal8Bit(::getenv("DBUS_SYSTEM_BUS_ADDRESS")),
                                                 kConnection);
        ASSERT_TRUE(bus.registerVirtualObject("/org/freedesktop/RealtimeKit1", &service_));
        ASSERT_TRUE(bus.registerService("org.freedesktop.RealtimeKit1"));
    }
    void refuse() { service_.left = 0; }
    void onlyOnce() { service_.left = 1; }
    int raised() const { return service_.raised; }

  private:
    static constexpr const char* kConnection = "played-realtime-kit";

    class Service : public QDBusVirtualObject {
      public:
        QString introspect(const QString& /*path*/) const override { return {}; }
        bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
            bus.send(answer(message));
            return true;
        }
        std::atomic<int> left = 1000; // until it refuses
        std::atomic<int> raised = 0;

      private:
        QDBusMessage answer(const QDBusMessage& message) {
            const QVariantList arguments = message.arguments();
            if (message.member() == "Get") {
                const bool priority = arguments.value(1) == "MaxRealtimePriority";
                const QVariant value = priority ? QVariant(15) : QVariant(qlonglong{200'000});
                return message.createReply(QVariant::fromValue(QDBusVariant(value)));
            }
            const sched_param parameter{.sched_priority = arguments.value(1).toInt()};
            const auto thread = static_cast<pid_t>(arguments.value(0).toULongLong());
            if (left-- <= 0 || message.member() != "MakeThreadRealtime" ||
                ::sched_setscheduler(thread, SCHED_RR | SCHED_RESET_ON_FORK, &parameter) != 0) {
                return message.createErrorReply(QDBusError::AccessDenied, "Operation not permitted");
            }
            ++raised;
            return message.createReply();
        }
    };

    std::filesystem::path folder_;
    QProcess daemon_;
    QThread thread_;
    Service service_;
};

struct RealtimeScheduling : ::testing::Test {
    void SetUp() override {
        const sched_param parameter{.sched_priority = 1};
        const sched_param usual{};
        const bool allowed = ::geteuid() == 0 && ::sched_setscheduler(0, SCHED_RR, &parameter) == 0;
        ::sched_setscheduler(0, SCHED_OTHER, &usual);
        if (!allowed) GTEST_SKIP() << "only root can give others the right to real-time scheduling, or not";
    }

    /// What a program of this user tells under these limits; nothing where they cannot be set.
    static std::optional<std::string> askUnder(int realtimePriority, int lockedMegabytes, int user) {
        QProcess program;
        program.start(TWINSTEP_REALTIME_SUBJECT, {QString::number(realtimePriority),
                                                  QString::number(lockedMegabytes), QString::number(user)});
        EXPECT_TRUE(program.waitForFinished(30'000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        if (program.exitCode() == kMayNotSetLimits) return std::nullopt;
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
        return program.readAllStandardOutput().toStdString();
    }
    /// The same without a right to real-time scheduling, but for root.
    static std::string ask(int user) {
        return askUnder(0, kLittle, user).value_or("limits cannot be lowered");
    }

    PlayedRealtimeKit kit;
};

} // namespace

TEST_F(RealtimeScheduling, IsTakenByThoseWhoMay) {
    const std::string told = ask(kRoot);
    EXPECT_THAT(told, StartsWith("real-time 20\n"));
    EXPECT_THAT(told, AllOf(HasSubstr("scheduling: round robin 20\n"), HasSubstr("started program: usual\n"),
                            HasSubstr("thread: usual 0\n"), HasSubstr("killed after: never\n"),
                            HasSubstr("memory: there\n")));
}

TEST_F(RealtimeScheduling, IsTakenAsFarAsTheLimitsAllow) {
    const auto told = askUnder(10, kLittle, kNobody);
    if (!told) GTEST_SKIP() << "root may not raise limits here";
    EXPECT_THAT(*told, AllOf(StartsWith("real-time 10, memory not locked: the limit memlock is 8 MB\n"),
                             HasSubstr("round robin 10\n"), HasSubstr("memory: there\n")));
    constexpr int kMuch = 1500; // megabytes, and less than is asked for later
    EXPECT_THAT(askUnder(99, kMuch, kNobody).value(),
                AllOf(StartsWith("real-time 20\n"), HasSubstr("memory: there\n")));
}

TEST_F(RealtimeScheduling, IsGivenByRealtimeKitOtherwise) {
    kit.open();
    const std::string told = ask(kNobody);
    EXPECT_THAT(told,
                StartsWith("real-time 15 (RealtimeKit), memory not locked: the limit memlock is 8 MB\n"));
    EXPECT_THAT(told, AllOf(HasSubstr("scheduling: round robin 15\n"), HasSubstr("started program: usual\n"),
                            HasSubstr("thread: usual 0\n"), HasSubstr("killed after: 200000\n"),
                            HasSubstr("memory: there\n")));
    EXPECT_EQ(kit.raised(), 2) << "at the start, and after the long handler";
}

TEST_F(RealtimeScheduling, AHandlerThatRunsOnIsNoLongerRealTimeUntilItEnds) {
    kit.open();
    for (const int user : {kRoot, kNobody}) {
        const std::string told = ask(user);
        EXPECT_THAT(told, HasSubstr("after a long handler: usual 0\n"));
        EXPECT_THAT(told, ContainsRegex("back in the event loop: round robin (20|15)\n"));
        EXPECT_THAT(told, Not(HasSubstr("changed")));
    }
    kit.onlyOnce();
    EXPECT_THAT(ask(kNobody),
                AllOf(HasSubstr("changed: not real-time: RealtimeKit: Operation not permitted\n"),
                      HasSubstr("back in the event loop: usual 0\n")));
}

TEST_F(RealtimeScheduling, SaysWhyItWasRefused) {
    EXPECT_THAT(ask(kNobody), AllOf(StartsWith("not real-time: RealtimeKit: "), HasSubstr("usual 0\n"),
                                    HasSubstr("killed after: never\n")));
    kit.open();
    kit.refuse();
    EXPECT_THAT(ask(kNobody), StartsWith("not real-time: RealtimeKit: Operation not permitted\n"));
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere", 1);
    EXPECT_THAT(ask(kNobody), StartsWith("not real-time: no system bus to ask RealtimeKit\n"));
}
