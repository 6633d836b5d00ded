// The client beside Debian's rigctld, whose dummy rig Debian's rigctl turns.

#include "platform/linux/timers.h"
#include "platform/qt/tcp_clients.h"
#include "radio/rigctld.h"
#include "tests/platform/linux/event_loop.h"
#include "tests/platform/linux/free_port.h"

#include <QProcess>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace {

class RigctldPeers : public ::testing::Test {
  protected:
    ~RigctldPeers() override { end(); }

    void startDaemon(const QStringList& more = {}) {
        daemon.setStandardErrorFile(QProcess::nullDevice());
        daemon.start("rigctld", QStringList{"-m", "1", "-P", "RIG", "-T", "127.0.0.1", "-t", number} + more);
        ASSERT_TRUE(EventLoop::until([this] {
            QTcpSocket probe;
            probe.connectToHost("127.0.0.1", static_cast<quint16>(port));
            return probe.waitForConnected(1000);
        }));
    }
    void end() {
        daemon.kill();
        EventLoop::until([this] { return daemon.state() == QProcess::NotRunning; });
    }
    void rigctl(const QStringList& command) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start("rigctl", QStringList{"-m", "2", "-P", "RIG", "-r", "127.0.0.1:" + number} + command);
        EXPECT_TRUE(EventLoop::until([&] { return process.state() == QProcess::NotRunning; }, 20'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    }
    void expect(const radio::RigReading& wanted) {
        EXPECT_TRUE(EventLoop::until([&] { return told == wanted; }, 10'000))
            << "told " << told.hertz.value_or(0) << (told.transmitting ? ", transmitting " : " ")
            << told.trouble;
    }

    EventLoop loop;
    qt_ports::TcpClients clients;
    linux_ports::Timers timers{loop.watcher};
    const int port = freePort();
    const QString number = QString::number(port);
    QProcess daemon;
    radio::RigReading told;
    radio::Rigctld rig{clients, timers, "127.0.0.1", port,
                       [this](const radio::RigReading& reading) { told = reading; }};
};

TEST_F(RigctldPeers, FollowsTheRigThroughSplitTransmissionAndRestart) {
    const radio::RigReading none{.trouble = "no rigctld at 127.0.0.1:" + std::to_string(port)};
    expect(none);
    startDaemon();
    rigctl({"F", "14025500"});
    expect({.hertz = 14025500});
    rigctl({"S", "1", "VFOB"});
    rigctl({"I", "7050001"});
    expect({.hertz = 7050001});
    rigctl({"S", "0", "VFOA"});
    expect({.hertz = 14025500});
    rigctl({"T", "1"});
    expect({.hertz = 14025500, .transmitting = true});
    rigctl({"T", "0"});
    expect({.hertz = 14025500});
    end();
    expect(none);
    startDaemon();
    rigctl({"F", "432100000"});
    expect({.hertz = 432100000});
}

TEST_F(RigctldPeers, FollowsTheRigOfADaemonThatIsToldTheVfo) {
    startDaemon({"--vfo"});
    rigctl({"--vfo", "F", "currVFO", "3573000"});
    expect({.hertz = 3573000});
    rigctl({"--vfo", "F", "currVFO", "3574000"});
    expect({.hertz = 3574000});
}

} // namespace
