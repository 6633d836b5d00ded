#include "tests/wine/station_window.h"

#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QTcpSocket>
#include <random>

namespace {

/// Somebody who speaks to the bridge without being asked.
class Stranger {
  public:
    explicit Stranger(int port, const QHostAddress& host = QHostAddress(QHostAddress::LocalHost)) {
        socket_.connectToHost(host, static_cast<quint16>(port));
        connected_ = socket_.waitForConnected();
    }
    bool connected() const { return connected_; }
    void send(const QByteArray& bytes) { socket_.write(bytes); }
    /// Whether the bridge has hung up, waited for.
    bool isDropped() {
        return waitFor([this] { return socket_.state() == QTcpSocket::UnconnectedState; });
    }
    bool isConnected() const { return socket_.state() == QTcpSocket::ConnectedState; }
    /// Whether the bridge comes to say a line that begins so.
    bool hears(const QByteArray& beginning) {
        return waitFor([&] {
            heard_ += socket_.readAll();
            return heard_.startsWith(beginning) || heard_.contains("\n" + beginning);
        });
    }
    const QByteArray& heard() const { return heard_; }
    /// What arrives stays where it is from now on.
    void stopReading() { socket_.setReadBufferSize(1); }

  private:
    QTcpSocket socket_;
    bool connected_ = false;
    QByteArray heard_;
};

class Hostile : public StationWindow {
  protected:
    void SetUp() override {
        startBridge();
        radio_.emplace(DdeServer::HamRadioDeluxe, "7.012.000");
        start(form::kCoilTuner, form::kHamRadioDeluxe);
        click("cmdAutoMemConn");
        ASSERT_TRUE(shows("lblFreqRx", "7.012.000"));
    }
    /// The frequency still arrives, as fast as ever.
    void expectService() {
        constexpr int kSoon = 1000; // milliseconds; the figure itself is measured elsewhere
        for (int attempt = 0;; ++attempt) {
            const std::string frequency = "14.0" + std::to_string(10 + ++changes_) + ".000";
            QElapsedTimer clock;
            clock.start();
            radio_->set(frequency);
            ASSERT_TRUE(shows("lblFreqRx", frequency));
            if (clock.elapsed() < kSoon) return;
            ASSERT_LT(attempt, 5) << clock.elapsed() << " ms";
        }
    }

    void sendText(const std::string& text) { radio_->set(text); }

  private:
    std::optional<DdeServer> radio_;
    int changes_ = 0;
};

const QByteArray kHello = "hello 1 stranger 1.0\n";

TEST_F(Hostile, WhoDoesNotGreetIsShownTheDoor) {
    for (const QByteArray& first : {QByteArray("link 1 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY\n"),
                                    QByteArray("hello 2 stranger 1.0\n"), QByteArray("GET / HTTP/1.1\r\n")}) {
        Stranger stranger(port);
        stranger.send(first);
        EXPECT_TRUE(stranger.hears("error ")) << first.toStdString();
        EXPECT_TRUE(stranger.isDropped()) << first.toStdString();
    }
    Stranger silent(port);
    EXPECT_TRUE(silent.hears("hello 1 twinstep-bridge "));
    EXPECT_TRUE(silent.isDropped());
    expectService();
}

TEST_F(Hostile, WhatCannotBeUnderstoodIsAnswered) {
    Stranger stranger(port);
    stranger.send(kHello);
    EXPECT_TRUE(stranger.hears("hello 1 "));
    int errors = 0;
    for (const char* line :
         {"dance", "link", "link 0 A B C", "link 1 A B", "link 99999999999999999999 A B C", "link x A B C",
          "link 1 A B C D E F", "unlink x", "post 1 Logger32 3 4", "post -1 Logger32 3 @nowhere", "watch",
          "listen", "watch ", "ping", "\\q", "\\", "", "hello 1 again 1.0"}) {
        const QByteArray after = "after" + QByteArray::number(++errors);
        stranger.send(QByteArray(line) + "\nping " + after + "\n");
        EXPECT_TRUE(stranger.hears("pong " + after + "\n")) << line;
        EXPECT_EQ(stranger.heard().count("\nerror "), errors) << line;
    }
    EXPECT_TRUE(stranger.isConnected());
    expectService();
}

TEST_F(Hostile, GarbageHarmsNobody) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(0, 255);
    Stranger stranger(port);
    Stranger unknown(port);
    stranger.send(kHello);
    for (int chunk = 0; chunk < 50; ++chunk) {
        QByteArray bytes(1024, '\0');
        for (char& c : bytes)
            c = static_cast<char>(byte(random));
        stranger.send(bytes);
        unknown.send(bytes);
        waitFor([] { return false; }, 5);
    }
    EXPECT_TRUE(unknown.isDropped());
    expectService();
    // In the middle of all that there is still a peer to talk to.
    stranger.send("\nping after\n");
    EXPECT_TRUE(stranger.hears("pong after"));
}

TEST_F(Hostile, EndlessLinesAndFloodsHarmNobody) {
    Stranger endless(port);
    endless.send(kHello + QByteArray(64 * 1024, 'x'));
    Stranger flood(port);
    flood.send(kHello);
    QByteArray pings;
    while (pings.size() < 2 * 1024 * 1024)
        pings += "ping 1234567890\n";
    flood.send(pings);
    expectService();
    endless.send("\nping after\n");
    EXPECT_TRUE(endless.hears("error "));
    EXPECT_TRUE(endless.hears("pong after"));
    EXPECT_TRUE(flood.isDropped());
    expectService();
}

TEST_F(Hostile, WhoDoesNotReadIsDropped) {
    Stranger deaf(port);
    deaf.stopReading();
    deaf.send(kHello);
    // Short lines with longer answers, which pile up: in the sockets' own buffers first, then with the
    // bridge.
    QByteArray lines;
    while (lines.size() < 10'000)
        lines += "x\n";
    EXPECT_TRUE(waitFor(
        [&] {
            deaf.send(lines);
            waitFor([] { return false; }, 100);
            return !deaf.isConnected();
        },
        120'000));
    EXPECT_FALSE(deaf.isConnected());
    expectService();
}

TEST_F(Hostile, MoreThanEightAreTooMany) {
    std::vector<std::unique_ptr<Stranger>> crowd;
    for (int i = 0; i < 7; ++i) {
        crowd.push_back(std::make_unique<Stranger>(port));
        crowd.back()->send(kHello);
        EXPECT_TRUE(crowd.back()->hears("hello 1 "));
    }
    Stranger ninth(port);
    EXPECT_TRUE(ninth.hears("error "));
    EXPECT_TRUE(ninth.isDropped());
    expectService();
}

TEST_F(Hostile, OneWithManyLinksTakesNothingFromOthers) {
    Stranger greedy(port);
    greedy.send(kHello);
    for (int id = 1; id <= 70; ++id) {
        const QByteArray number = QByteArray::number(id);
        greedy.send("link " + number + " HRD_RADIO_000 HRD_CAT HRD_FREQUENCY\n");
    }
    EXPECT_TRUE(greedy.hears("opened "));
    EXPECT_TRUE(greedy.hears("error "));
    expectService();
}

TEST_F(Hostile, ATextThatNoLineHoldsEndsItsLinkAlone) {
    Stranger listener(port);
    listener.send(kHello + "link 1 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY\n");
    EXPECT_TRUE(listener.hears("changed 1 "));
    sendText(std::string(100'000, '1'));
    EXPECT_TRUE(shows("lblAutoMemConn", "Connect"));
    EXPECT_TRUE(shows("lblFreqRx", ""));
    EXPECT_TRUE(listener.hears("failed 1 "));
    EXPECT_TRUE(listener.isConnected());
    sendText("7.013.000");
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("cmdAutoMemConn", "0"));
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("lblFreqRx", "7.013.000"));
    expectService();
}

TEST(Stranger, FromAnAddressThatIsNotAllowedIsRefused) {
    const auto addresses = QNetworkInterface::allAddresses();
    const auto own = std::ranges::find_if(addresses, [](const QHostAddress& address) {
        return address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback();
    });
    if (own == addresses.end()) GTEST_SKIP() << "this computer has no address but its own 127.0.0.1";
    const int port = freePort();
    {
        const Bridge bridge(port, {"--listen", "0.0.0.0", "--allow", "192.0.2.1"});
        Stranger stranger(port, *own);
        EXPECT_TRUE(stranger.isDropped());
        EXPECT_EQ(stranger.heard(), "");
        Stranger local(port);
        EXPECT_TRUE(local.hears("hello 1 "));
    }
    const Bridge bridge(port, {"--listen", "0.0.0.0", "--allow", "192.0.2.1," + own->toString()});
    Stranger guest(port, *own);
    EXPECT_TRUE(guest.hears("hello 1 "));
}

} // namespace
