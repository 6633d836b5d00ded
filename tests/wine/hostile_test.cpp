#include "tests/wine/station_window.h"

#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QTcpSocket>
#include <iostream>
#include <list>
#include <random>

namespace {

/// Somebody who speaks to the bridge without being asked.
class Stranger {
  public:
    /// From this address of the computer, where one is given.
    explicit Stranger(int port, const QHostAddress& host = QHostAddress(QHostAddress::LocalHost),
                      const QHostAddress& from = {}) {
        if (!from.isNull()) socket_.bind(from);
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
        return waitFor([&] { return has(beginning); });
    }
    /// Whether it has said one by now.
    bool has(const QByteArray& beginning) {
        heard_ += socket_.readAll();
        return heard_.startsWith(beginning) || heard_.contains("\n" + beginning);
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
    // Not so much that it would be dropped for its quantity: one byte of 256 ends a wrong line.
    for (int chunk = 0; chunk < 64; ++chunk) {
        QByteArray bytes(256, '\0');
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
    endless.send(kHello + QByteArray(32 * 1024, 'x'));
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
    for (int id = 1; id <= 40; ++id)
        deaf.send("link " + QByteArray::number(id) + " HRD_RADIO_000 HRD_CAT HRD_FREQUENCY\n");
    // Each change comes to it forty times. All that piles up: in the sockets' own buffers first, then with
    // the bridge.
    int changes = 0;
    EXPECT_TRUE(waitFor(
        [&] {
            sendText(std::to_string(++changes) + std::string(3000, '1'));
            deaf.send("ping 1\n");
            waitFor([] { return false; }, 50);
            return !deaf.isConnected();
        },
        120'000));
    EXPECT_NE(bridge->lineWith("does not take what it is sent"), "");
    expectService();
}

TEST_F(Hostile, WhoSendsOnlyWrongLinesKeepsNobodyWaiting) {
    // Some 100 KB a second, and whoever is dropped comes again.
    constexpr int kRounds = 40;
    constexpr int kPause = 50; // milliseconds
    constexpr qint64 kSoon = 300;
    const QByteArray lines = QByteArray("x\n").repeated(2500);
    Stranger peer(port);
    peer.send(kHello);
    std::optional<Stranger> hostile;
    int dropped = 0;
    std::vector<qint64> times;
    for (int round = 0; round < kRounds; ++round) {
        if (!hostile || !hostile->isConnected()) {
            dropped += hostile ? 1 : 0;
            hostile.emplace(port);
            hostile->send(kHello);
        }
        hostile->send(lines);
        const QByteArray number = QByteArray::number(round);
        QElapsedTimer clock;
        clock.start();
        peer.send("ping " + number + "\n");
        ASSERT_TRUE(peer.hears("pong " + number + "\n"));
        times.push_back(clock.elapsed());
        waitFor([] { return false; }, kPause);
    }
    std::ranges::sort(times);
    std::cout << "pings beside wrong lines: median " << times[times.size() / 2] << " ms, worst "
              << times.back() << " ms; dropped " << dropped << " times\n";
    EXPECT_LT(times[times.size() / 2], kSoon);
    EXPECT_GT(dropped, 0);
    EXPECT_NE(bridge->lineWith("too many wrong lines"), "");
    expectService();
}

TEST_F(Hostile, ThoseWhoAskForManyLinksKeepNobodyWaiting) {
    constexpr int kCrowd = 3, kLinks = 50;
    DdeServer satPc32(DdeServer::SatPc32, "SNAO-7 AZ1.0 EL2.0 UP0");
    Stranger peer(port);
    peer.send(kHello);
    bool opened = false;
    // With another crowd where the machine itself is too slow for one link in a second.
    for (int attempt = 1; attempt <= 3 && !opened; ++attempt) {
        std::list<Stranger> crowd;
        int items = 0; // each one its own: links to the same share their search
        for (int n = 0; n < kCrowd; ++n) {
            Stranger& greedy = crowd.emplace_back(port);
            greedy.send(kHello);
            for (int id = 1; id <= kLinks; ++id)
                greedy.send("link " + QByteArray::number(id) + " Absent Topic Item" +
                            QByteArray::number(++items) + "\n");
        }
        EXPECT_TRUE(crowd.back().hears("failed "));
        const QByteArray id = QByteArray::number(attempt);
        peer.send("link " + id + " SatPC32 SatPcDdeConv SatPcDdeItem\n");
        EXPECT_TRUE(waitFor([&] { return peer.has("opened " + id) || peer.has("failed " + id); }));
        opened = peer.has("opened " + id);
        auto answered = 0;
        for (Stranger& greedy : crowd)
            answered += greedy.has("failed ") ? static_cast<int>(greedy.heard().count("\nfailed ")) : 0;
        std::cout << "after " << answered << " of " << items << " links of others\n";
        if (opened) {
            EXPECT_LT(answered, items / 2);
        }
    }
    EXPECT_TRUE(opened);
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
        // From another address than the one that it reaches, as another computer comes.
        Stranger stranger(port, QHostAddress(QHostAddress::LocalHost), *own);
        EXPECT_TRUE(stranger.isDropped());
        EXPECT_EQ(stranger.heard(), "");
        Stranger local(port);
        EXPECT_TRUE(local.hears("hello 1 "));
        Stranger itself(port, *own);
        EXPECT_TRUE(itself.hears("hello 1 "));
    }
    const Bridge bridge(port, {"--listen", "0.0.0.0", "--allow", "192.0.2.1," + own->toString()});
    Stranger guest(port, QHostAddress(QHostAddress::LocalHost), *own);
    EXPECT_TRUE(guest.hears("hello 1 "));
}

TEST(Stranger, WatchesTheSameWindowWhileItHasItsTitle) {
    const int port = freePort();
    const Bridge bridge(port);
    std::optional<LoggerWindow> first(std::in_place, "Twin");
    Stranger stranger(port);
    stranger.send(kHello + "watch Twin\n");
    EXPECT_TRUE(stranger.hears("window Twin "));
    // In front of the first.
    const LoggerWindow second("Twin");
    // By then it was looked for some times.
    EXPECT_TRUE(stranger.hears("ping 1\n"));
    stranger.send("pong 1\n");
    EXPECT_TRUE(stranger.hears("ping 2\n"));
    EXPECT_EQ(stranger.heard().count("\nwindow Twin "), 1) << stranger.heard().toStdString();
    first.reset();
    EXPECT_TRUE(waitFor([&] {
        return stranger.has("window Twin ") && stranger.heard().count("\nwindow Twin ") == 2;
    })) << stranger.heard().toStdString();
    EXPECT_FALSE(stranger.heard().contains("window Twin 0\n"));
}

} // namespace
