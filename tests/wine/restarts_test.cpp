#include "tests/wine/station_window.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpSocket>
#include <cstdio>
#include <gmock/gmock.h>
#include <vector>

namespace {

constexpr int kRestarts = 20; // unless TWINSTEP_RESTARTS says otherwise
constexpr int kWarmUp = 3;    // what is kept once for all
constexpr int kRounds = 5;    // Wine starts and ends services of its own at times, which a round may meet

/// What is held open by whom.
struct Held {
    int handles = 0, atoms = 0, windows = 0; // of everything under Wine
    int serverFiles = 0;                     // of Wine's server, which has a file for most handles
    int processes = 0;                       // under this Wine
    int ownFiles = 0;                        // of the controller

    bool within(const Held& other) const {
        return handles <= other.handles && atoms <= other.atoms && windows <= other.windows &&
               serverFiles <= other.serverFiles && processes <= other.processes && ownFiles <= other.ownFiles;
    }
};

std::ostream& operator<<(std::ostream& out, const Held& held) {
    return out << held.handles << " handles, " << held.atoms << " atoms, " << held.windows << " windows, "
               << held.serverFiles << " files of Wine's server, " << held.processes << " processes, "
               << held.ownFiles << " files of the controller";
}

int filesOf(const QString& process) {
    return static_cast<int>(
        QDir("/proc/" + process + "/fd").entryList(QDir::AllEntries | QDir::System).size());
}

/// Those of this Wine whose command line has this in it.
int processesUnderWine(const QByteArray& program = {}) {
    const QByteArray mark =
        ("WINEPREFIX=" + Wine::instance().environment().value("WINEPREFIX")).toLocal8Bit();
    int count = 0;
    for (const QString& process : QDir("/proc").entryList(QDir::Dirs)) {
        QFile environment("/proc/" + process + "/environ"), commandLine("/proc/" + process + "/cmdline");
        if (process.toInt() > 0 && environment.open(QFile::ReadOnly) && commandLine.open(QFile::ReadOnly) &&
            environment.readAll().contains(mark) && commandLine.readAll().contains(program))
            ++count;
    }
    return count;
}

/// Sockets at this port that are more than a connection's afterglow, and their states.
std::vector<std::string> socketsAt(int port) {
    constexpr int kLocal = 1, kRemote = 2, kState = 3;
    const QByteArray mark = ":" + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
    QFile table("/proc/net/tcp");
    EXPECT_TRUE(table.open(QFile::ReadOnly));
    std::vector<std::string> sockets;
    for (const QByteArray& line : table.readAll().split('\n')) {
        const auto fields = line.simplified().split(' ');
        if (fields.size() <= kState || fields[kState] == "06") continue; // 06: TIME_WAIT
        if (fields[kLocal].endsWith(mark) || fields[kRemote].endsWith(mark))
            sockets.push_back(line.simplified().toStdString());
    }
    return sockets;
}

class Restarts : public StationWindow {
  protected:
    void SetUp() override {
        radio_.emplace(DdeServer::HamRadioDeluxe, "7.012.000");
        satPc32_.emplace(DdeServer::SatPc32, "SNAO-7 AZ1.0 EL2.0 UP0");
        logger_.emplace();
        start(form::kCoilTuner, form::kHamRadioDeluxe);
    }

    Held held() {
        Held held;
        radio_->tell("count");
        const std::string line = radio_->line("count ");
        EXPECT_EQ(std::sscanf(line.c_str(), "count handles %d atoms %d windows %d", &held.handles,
                              &held.atoms, &held.windows),
                  3)
            << line;
        held.serverFiles = filesOf(QString::number(Wine::instance().serverProcess()));
        held.processes = processesUnderWine();
        held.ownFiles = filesOf("self");
        return held;
    }

    /// Start, connect, link, hear, end: the controller, and beside it a client that uses every word.
    void oneLife(bool orderly) {
        startBridge();
        click("cmdAutoMemConn");
        ASSERT_TRUE(shows("lblFreqRx", "7.012.000"));
        useEverything();
        if (orderly) {
            radio_->tell("close twinstep-bridge.exe");
            ASSERT_TRUE(bridge->ends());
            radio_->line("disconnected");
        } else {
            crashBridge(*radio_);
        }
        bridge.reset();
        ASSERT_TRUE(shows("lblFreqRx", ""));
        click("cmdAutoMemConn");
        ASSERT_TRUE(shows("cmdAutoMemConn", "0"));
    }

    static int restarts() {
        const int asked = qEnvironmentVariableIntValue("TWINSTEP_RESTARTS");
        return asked > 0 ? asked : kRestarts;
    }

  private:
    void useEverything() {
        QTcpSocket socket;
        QByteArray heard;
        socket.connectToHost("127.0.0.1", static_cast<quint16>(port));
        ASSERT_TRUE(socket.waitForConnected());
        const auto hears = [&](const QByteArray& part) {
            return waitFor([&] {
                heard += socket.readAll();
                return heard.contains(part);
            });
        };
        socket.write("hello 1 test 1.0\nregister Logger32\nlisten Form1\nwatch Logger32\n"
                     "link 1 SatPC32 SatPcDdeConv SatPcDdeItem\n");
        ASSERT_TRUE(hears("\nwindow Logger32 "));
        QByteArray window = heard.mid(heard.indexOf("\nwindow Logger32 ") + 17);
        window.truncate(window.indexOf('\n'));
        socket.write("post " + window + " Logger32 3 @Form1\n");
        ASSERT_TRUE(hears("\nchanged 1 SNAO-7"));
        logger_->line("subscribed ");
        logger_->tell("frequency 14200000");
        ASSERT_TRUE(hears("\nmessage Form1 Logger32 100 14200000"));
        socket.write("post " + window + " Logger32 4 0\n");
        logger_->line("unsubscribed");
    }

    std::optional<DdeServer> radio_, satPc32_;
    std::optional<LoggerWindow> logger_;
};

TEST_F(Restarts, LeaveNothingBehind) {
    for (int i = 0; i < kWarmUp; ++i)
        oneLife(true);
    bool grown = true;
    for (int round = 0; round < kRounds && grown && !HasFailure(); ++round) {
        const Held before = held();
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < restarts() && !HasFailure(); ++i)
            oneLife(true);
        const auto milliseconds = clock.elapsed() / restarts();
        Held after;
        // What ends is gone a moment later.
        grown = !waitFor([&] { return (after = held()).within(before); });
        std::cout << restarts() << " restarts, " << milliseconds << " ms each\nbefore: " << before
                  << "\nafter:  " << after << '\n';
    }
    EXPECT_FALSE(grown) << "what is held grew in every round";
    EXPECT_THAT(socketsAt(port), ::testing::IsEmpty());
    EXPECT_EQ(processesUnderWine("twinstep-bridge.exe"), 0);
}

TEST_F(Restarts, AfterACrashLeaveNoProcessAndNoSocket) {
    for (int i = 0; i < kWarmUp; ++i)
        oneLife(false);
    // A station program keeps its side of a conversation whose client has crashed: that is not looked at
    // here.
    const int files = filesOf("self");
    // Wine's server rarely, once in a hundred crashes or more, forgets a connection of the program that
    // crashed: what the bridge itself left would be there after every round.
    constexpr int kAMoment = 3000; // milliseconds
    int rounds = 0, leaving = 0;
    for (int lives = 0; (lives < restarts() || (leaving == rounds && rounds < kRounds)) && !HasFailure();
         lives += kRestarts, ++rounds) {
        const auto before = socketsAt(port).size();
        for (int i = 0; i < kRestarts && !HasFailure(); ++i)
            oneLife(false);
        if (!waitFor([&] { return socketsAt(port).size() <= before; }, kAMoment)) ++leaving;
    }
    std::cout << rounds * kRestarts << " crashes, in rounds of " << kRestarts << "; sockets stayed after "
              << leaving << " of " << rounds << " rounds, " << socketsAt(port).size() << " in all\n";
    EXPECT_LT(leaving, rounds) << ::testing::PrintToString(socketsAt(port));
    EXPECT_TRUE(waitFor([&] { return filesOf("self") <= files; })) << filesOf("self") << ", before " << files;
    EXPECT_EQ(processesUnderWine("twinstep-bridge.exe"), 0);
}

} // namespace
