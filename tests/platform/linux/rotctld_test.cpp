// The server beside Debian's rotctld, and in front of Debian's rotctl and Gpredict.

#include "form/form1.h"
#include "platform/linux/tcp_servers.h"
#include "platform/linux/timers.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"
#include "rotor/rotctld_server.h"
#include "tests/platform/linux/event_loop.h"
#include "tests/platform/linux/free_port.h"

#include <QProcess>
#include <QTcpSocket>
#include <gmock/gmock.h>

using rotor::rotctld::Result;
using ::testing::ElementsAre;

namespace {

/// A rotator at 0/0 that does what it is told.
struct Rotator : rotor::rotctld::Rotator {
    std::string version() const override { return "1.2.3"; }
    rotor::Direction position() const override {
        ++asked;
        return {};
    }
    Result point(const rotor::Direction& target) override {
        return note("point " + std::to_string(target.azimuth) + " " + std::to_string(target.elevation));
    }
    Result move(rotor::Axis, int, bool fast) override { return note(fast ? "fast" : "slow"); }
    Result stop() override { return note("stop"); }
    Result park() override { return note("park"); }
    void endMove() override { note("end of move"); }
    void heard() override {}

    Result note(const std::string& what) {
        told.push_back(what);
        return Result::kOk;
    }
    std::vector<std::string> told;
    mutable int asked = 0;
};

class RotctldPeers : public ::testing::Test {
  protected:
    void SetUp() override {
        server.listen({"127.0.0.1", port, {}});
        ASSERT_EQ(server.failure(), "");
    }
    std::unique_ptr<QTcpSocket> connect(int to) {
        auto socket = std::make_unique<QTcpSocket>();
        EXPECT_TRUE(EventLoop::until([&] {
            if (socket->state() == QAbstractSocket::UnconnectedState)
                socket->connectToHost("127.0.0.1", static_cast<quint16>(to));
            return socket->state() == QAbstractSocket::ConnectedState;
        }));
        return socket;
    }
    /// The answer to these bytes; the end of it is known by the answer to one more question.
    static std::string ask(QTcpSocket& socket, const std::string& bytes) {
        static const std::string kQuestion = "\n+R x\n", kEnd = "reset: x\nRPRT -1\n";
        const std::string all = bytes + kQuestion;
        std::string answer;
        socket.write(all.data(), static_cast<qint64>(all.size()));
        EXPECT_TRUE(EventLoop::until([&] {
            answer += socket.readAll().toStdString();
            return answer.ends_with(kEnd) || socket.state() == QAbstractSocket::UnconnectedState;
        })) << bytes
            << " is answered " << answer;
        answer += socket.readAll().toStdString();
        return answer.ends_with(kEnd) ? answer.substr(0, answer.size() - kEnd.size()) : answer + "(closed)";
    }

    EventLoop loop;
    linux_ports::TcpServers tcp{loop.watcher};
    linux_ports::Timers timers{loop.watcher};
    simulated::Clock clock;
    simulated::DdeLinks links;
    form::Form1 form{clock, links};
    Rotator rotator;
    rotor::rotctld::Server server{form, tcp, timers, rotator};
    const int port = freePort();
};

TEST_F(RotctldPeers, AnswersByteByByteAsRotctldDoes) {
    const int otherPort = freePort();
    QProcess other;
    other.setStandardErrorFile(QProcess::nullDevice());
    other.start("rotctld", {"-m", "1", "-T", "127.0.0.1", "-t", QString::number(otherPort)});
    ASSERT_TRUE(EventLoop::until([&] { return other.state() == QProcess::Running; }));
    const auto theirs = connect(otherPort), ours = connect(port);
    for (const char* bytes : {"p",
                              "\\get_pos",
                              "+p",
                              ";p",
                              "|\\get_pos",
                              ",p",
                              "p\r",
                              "  p",
                              "pp",
                              "p p",
                              "p;p",
                              "+ p",
                              "p # P 1 2",
                              "# p",
                              "",
                              "+",
                              ";",
                              "P 0 0",
                              " P   0\t0 ",
                              "P 0.0 0,0",
                              "P0 0",
                              "P -0 +0",
                              "P 0e0 .0",
                              "P 0 0 30",
                              "pP 0 0",
                              "\\set_pos 0 0",
                              "+P 0 0",
                              ";\\set_pos  0   0",
                              "P abc 20",
                              "+P abc 20",
                              "P 10 . ",
                              "|P 500 20",
                              "P 451 20",
                              "P -181 20",
                              "P inf 20",
                              "P 10 181",
                              "P 10 -91",
                              "M 3 50",
                              "M 0 50",
                              "M 32 50",
                              "M left 50",
                              "M 2 x",
                              "+M x 50",
                              "\\move 1 50",
                              "M 2 0\nS",
                              "+M UP -1\n;S",
                              "M CCW 50\nS",
                              "M RIGHT 101\n\\stop",
                              "+S",
                              ",K",
                              "\\park\nS",
                              "R x",
                              "\\reset x"}) {
        EXPECT_EQ(ask(*ours, bytes), ask(*theirs, bytes)) << bytes;
    }
    // What they say of themselves differs: the model and the range.
    for (const char* bytes : {"\\dump_state", "+\\dump_state", ";\\dump_state"}) {
        const auto shape = [](std::string text) {
            for (std::size_t at = 0; (at = text.find_first_of("0123456789.-", at)) != std::string::npos;)
                text.erase(at, 1);
            return text;
        };
        EXPECT_EQ(shape(ask(*ours, bytes)), shape(ask(*theirs, bytes))) << bytes;
    }
    EXPECT_EQ(ask(*ours, "q"), "(closed)");
    EXPECT_EQ(ask(*theirs, "q"), "(closed)");
    other.kill();
    EventLoop::until([&] { return other.state() == QProcess::NotRunning; });
}

TEST_F(RotctldPeers, RotctlTurnsTheRotator) {
    const auto rotctl = [this](const QStringList& command) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start("rotctl", QStringList{"-m", "2", "-r", "127.0.0.1:" + QString::number(port)} + command);
        EXPECT_TRUE(EventLoop::until([&] { return process.state() == QProcess::NotRunning; }, 20000));
        return process.readAll().simplified().toStdString();
    };
    EXPECT_EQ(rotctl({"p"}), "0.00 0.00");
    EXPECT_EQ(rotctl({"P", "-90", "45.5"}), "");
    EXPECT_EQ(rotctl({"M", "UP", "60"}), ""); // and it goes at once
    EXPECT_EQ(rotctl({"S"}), "");
    EXPECT_EQ(rotctl({"K"}), "");
    EXPECT_THAT(rotctl({"P", "10", "200"}), ::testing::EndsWith("Invalid parameter"));
    EXPECT_EQ(rotctl({"_"}), "Twinstep 1.2.3");
    EXPECT_THAT(rotator.told,
                ElementsAre("point -90.000000 45.500000", "fast", "end of move", "stop", "park"));
    EXPECT_TRUE(EventLoop::until([this] { return server.clients() == 0; }));
}

TEST_F(RotctldPeers, GpredictTracksASatellite) {
    QProcess gpredict;
    gpredict.start(TWINSTEP_SOURCES "/tests/platform/linux/gpredict.sh", {QString::number(port)});
    // While it tracks it asks where the antenna is, and names the target as long as that is another place.
    EXPECT_TRUE(EventLoop::until([&] { return rotator.told.size() >= 2 && rotator.asked >= 3; }, 60'000));
    for (const std::string& each : rotator.told)
        EXPECT_THAT(each, ::testing::StartsWith("point "));
    gpredict.terminate();
    EXPECT_TRUE(EventLoop::until([&] { return gpredict.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(EventLoop::until([this] { return server.clients() == 0; }));
}

} // namespace
