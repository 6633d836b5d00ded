// The toolkit's TCP clients on real sockets, and the bridge's client over them.

#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "platform/linux/timers.h"
#include "platform/qt/tcp_clients.h"
#include "tests/platform/linux/event_loop.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <algorithm>
#include <gmock/gmock.h>

using ::testing::ElementsAre;

namespace {

class TcpClientsTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(server.listen(QHostAddress::LocalHost)); }

    int port() const { return server.serverPort(); }
    platform::TcpClients::Events events() {
        platform::TcpClients::Events events;
        events.connected = [this] { happened("connected"); };
        events.received = [this](const std::string& bytes) {
            longest = std::max(longest, bytes.size());
            received += bytes;
            happened("received");
        };
        events.ended = [this] { happened("ended"); };
        return events;
    }
    void happened(const std::string& event) {
        if (told.empty() || told.back() != event) told.push_back(event);
        if (onEvent) onEvent(event);
    }
    bool tells(const std::string& event) {
        return EventLoop::until([&] { return std::ranges::count(told, event) > 0; });
    }
    void connect() {
        client = clients.connect("127.0.0.1", port(), events());
        ASSERT_TRUE(tells("connected"));
        ASSERT_TRUE(EventLoop::until([this] { return server.hasPendingConnections(); }));
        peer.reset(server.nextPendingConnection());
    }

    EventLoop loop;
    QTcpServer server;
    std::unique_ptr<QTcpSocket> peer;
    qt_ports::TcpClients clients;
    std::unique_ptr<platform::TcpClient> client;
    std::vector<std::string> told;
    std::string received;
    std::size_t longest = 0;
    std::function<void(const std::string&)> onEvent;
};

TEST_F(TcpClientsTest, ReceivesAllInSmallPiecesAndThenTheEnd) {
    connect();
    EXPECT_EQ(client->state(), platform::TcpState::Connected);
    std::string all;
    for (int n = 0; all.size() < 100000; ++n)
        all += std::to_string(n) + "\n";
    peer->write(all.data(), static_cast<qint64>(all.size()));
    peer->disconnectFromHost();
    ASSERT_TRUE(tells("ended"));
    EXPECT_EQ(received, all);
    EXPECT_LE(longest, 1024U);
    EXPECT_THAT(told, ElementsAre("connected", "received", "ended"));
    EXPECT_FALSE(client->send("late"));
}

TEST_F(TcpClientsTest, AFailureComesAfterTheCallHasReturned) {
    const int closed = port();
    server.close();
    client = clients.connect("127.0.0.1", closed, events());
    EXPECT_TRUE(told.empty());
    EXPECT_FALSE(client->send("early"));
    ASSERT_TRUE(tells("ended"));
    EXPECT_EQ(client->state(), platform::TcpState::Error);
    EXPECT_THAT(told, ElementsAre("ended"));
}

TEST_F(TcpClientsTest, WhatAPeerDoesNotReadIsRefusedAndTheRestArrivesWhole) {
    connect();
    peer->setReadBufferSize(1); // reads next to nothing
    const std::string piece(4000, 'x');
    std::size_t sent = 0;
    ASSERT_TRUE(EventLoop::until([&] {
        if (!client->send(piece)) return true;
        sent += piece.size();
        return false;
    }));
    EXPECT_EQ(client->state(), platform::TcpState::Connected);
    std::size_t arrived = 0;
    peer->setReadBufferSize(0);
    EXPECT_TRUE(EventLoop::until([&] {
        arrived += static_cast<std::size_t>(peer->readAll().size());
        return arrived == sent;
    }));
    EXPECT_TRUE(client->send(piece));
}

TEST_F(TcpClientsTest, LastWordsGoOutWhenAClientIsDestroyed) {
    connect();
    ASSERT_TRUE(client->send("bye"));
    client.reset();
    ASSERT_TRUE(EventLoop::until([this] { return peer->state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_EQ(peer->readAll().toStdString(), "bye");
}

TEST_F(TcpClientsTest, AClientMayGoInsideItsCallbacks) {
    for (const auto* last : {"connected", "received", "ended"}) {
        told.clear();
        onEvent = [&](const std::string& event) {
            if (event == last) client.reset();
        };
        client = clients.connect("127.0.0.1", port(), events());
        ASSERT_TRUE(EventLoop::until([this] { return server.hasPendingConnections(); }));
        peer.reset(server.nextPendingConnection());
        peer->write("something to read");
        peer->disconnectFromHost();
        ASSERT_TRUE(EventLoop::until([this] { return client == nullptr; })) << last;
        EventLoop::runFor(20);
        EXPECT_EQ(told.back(), last);
    }
}

TEST_F(TcpClientsTest, BytesComeWhileACallbackHasABoxOpen) {
    connect();
    bool nested = false;
    onEvent = [&](const std::string&) {
        if (std::exchange(nested, true)) return;
        peer->write("second");
        EXPECT_TRUE(EventLoop::until([this] { return received == "firstsecond"; }));
    };
    peer->write("first");
    EXPECT_TRUE(EventLoop::until([this] { return received == "firstsecond"; }));
}

/// A bridge of one connection at a time, on a real socket.
class BridgeOnSocketsTest : public ::testing::Test {
  protected:
    BridgeOnSocketsTest() {
        QObject::connect(&server, &QTcpServer::newConnection, [this] {
            peer = server.nextPendingConnection();
            peer->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            QObject::connect(peer, &QTcpSocket::readyRead, [this] { hear(); });
            say("hello 1 twinstep-bridge 1.0.0");
        });
        listen(0);
    }
    void listen(quint16 at) { ASSERT_TRUE(server.listen(QHostAddress::LocalHost, at)); }
    void hear() {
        reader.feed(peer->readAll().toStdString());
        while (const auto line = reader.next())
            answer(line->text);
    }
    void answer(const std::string& line) {
        const auto fields = bridge::split(line).value();
        if (fields[0] == "ping") say("pong " + fields[1]);
        if (fields[0] == "link") say("opened " + fields[1]);
        if (fields[0] == "watch") say("window " + fields[1] + " 77");
        heard.push_back(line);
    }
    void say(const std::string& line) { peer->write((line + "\n").c_str()); }
    platform::DdeEvents events() {
        platform::DdeEvents events;
        events.opened = [this] { state = "opened"; };
        events.failed = [this] { state = "failed"; };
        events.closed = [this] { state = "closed"; };
        events.changed = [this](const std::string& changed) {
            text = changed;
            ++changes;
        };
        return events;
    }
    std::unique_ptr<platform::DdeLink> open() { return links.open("App|Topic", "Item", events()); }

    EventLoop loop;
    QTcpServer server;
    QTcpSocket* peer = nullptr; // the server's
    bridge::LineReader reader;
    std::vector<std::string> heard;
    std::string state, text;
    int changes = 0;
    linux_ports::Timers timers{loop.watcher};
    qt_ports::TcpClients tcp;
    bridge_ports::Connection connection{tcp, timers, "9.9", {}};
    bridge_ports::DdeLinks links{connection, timers};
    bridge_ports::StationMessages station{connection, timers};
};

TEST_F(BridgeOnSocketsTest, AnswersWithinASecondAndBringsChangesAtOnce) {
    connection.setAddress({"localhost", server.serverPort()});
    QElapsedTimer clock;
    clock.start();
    const auto link = open();
    ASSERT_TRUE(EventLoop::until([this] { return !state.empty(); }));
    EXPECT_EQ(state, "opened");
    EXPECT_LT(clock.elapsed(), 1000);

    std::vector<qint64> latencies; // microseconds
    for (int n = 0; n < 200; ++n) {
        const std::string sent = std::to_string(n);
        clock.restart();
        say("changed 1 " + sent);
        ASSERT_TRUE(EventLoop::until([&] { return text == sent; }));
        latencies.push_back(clock.nsecsElapsed() / 1000);
    }
    std::ranges::sort(latencies);
    RecordProperty("median_us", std::to_string(latencies[100]));
    RecordProperty("worst_us", std::to_string(latencies.back()));
    // Far below what bytes that wait for company take, and far above a fast machine's figure.
    EXPECT_LT(latencies[100], 10000);
}

TEST_F(BridgeOnSocketsTest, ABridgeThatComesBackIsToldEverythingAnew) {
    const quint16 port = server.serverPort();
    connection.setAddress({"127.0.0.1", port});
    const long window = station.ownWindow("Form1");
    station.registerMessage("Logger32");
    station.hook(window, [](long, long, long) {});
    const auto link = open();
    ASSERT_TRUE(
        EventLoop::until([this] { return station.findWindow("Logger32") == 77 && state == "opened"; }));
    server.close();
    peer->abort();
    ASSERT_TRUE(EventLoop::until([this] { return state == "closed"; }));
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    ASSERT_TRUE(EventLoop::until([this] { return connection.stateText().starts_with("no bridge"); }));
    heard.clear();
    listen(port);
    ASSERT_TRUE(EventLoop::until([this] { return station.findWindow("Logger32") == 77; }));
    heard.resize(4);
    EXPECT_THAT(heard,
                ElementsAre("hello 1 twinstep 9.9", "register Logger32", "listen Form1", "watch Logger32"));
}

TEST_F(BridgeOnSocketsTest, AFloodOfLinesLeavesTheTimersTicking) {
    connection.setAddress({"127.0.0.1", server.serverPort()});
    const auto link = open();
    ASSERT_TRUE(EventLoop::until([this] { return state == "opened"; }));
    std::string flood;
    for (int n = 0; n < 20000; ++n)
        flood += "changed 1 " + std::to_string(n) + "\n";
    int ticks = 0;
    const auto timer = timers.create([&ticks] { ++ticks; });
    QElapsedTimer clock;
    clock.start();
    timer->start(std::chrono::milliseconds(1));
    peer->write(flood.data(), static_cast<qint64>(flood.size()));
    ASSERT_TRUE(EventLoop::until([this] { return changes == 20000; }, 60000));
    // One a millisecond; a machine that is busy elsewhere may take some of them.
    EXPECT_GT(ticks, clock.elapsed() / 5) << clock.elapsed();
    EXPECT_EQ(text, "19999");
}

} // namespace
