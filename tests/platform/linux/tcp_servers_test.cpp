// The listening sockets, with the toolkit's sockets as peers.

#include "platform/linux/tcp_servers.h"
#include "runtime/errors.h"
#include "tests/platform/linux/event_loop.h"
#include "tests/platform/linux/free_port.h"

#include <QTcpSocket>
#include <algorithm>
#include <gmock/gmock.h>
#include <vector>

using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

class TcpServersTest : public ::testing::Test {
  protected:
    /// What the server knows of one peer.
    struct Guest {
        std::unique_ptr<platform::TcpConnection> connection;
        platform::TcpServers::Addresses addresses;
        std::string received;
        std::size_t longest = 0;
        int writable = 0;
        bool ended = false;
        std::function<void()> onEvent;
    };

    void listen() {
        server = servers.listen("127.0.0.1", port, [this](auto connection, const auto& addresses) {
            guests.push_back(std::make_unique<Guest>());
            Guest& guest = *guests.back();
            guest.addresses = addresses;
            guest.connection = std::move(connection);
            guest.connection->start({[&guest](std::string_view bytes) {
                                         guest.received += bytes;
                                         guest.longest = std::max(guest.longest, bytes.size());
                                         if (guest.onEvent) guest.onEvent();
                                     },
                                     [&guest] { ++guest.writable; },
                                     [&guest] {
                                         guest.ended = true;
                                         if (guest.onEvent) guest.onEvent();
                                     }});
        });
    }
    /// Connects a peer, and its guest is the last one.
    std::unique_ptr<QTcpSocket> connect() {
        auto peer = std::make_unique<QTcpSocket>();
        const std::size_t before = guests.size();
        peer->connectToHost("127.0.0.1", static_cast<quint16>(port));
        EXPECT_TRUE(EventLoop::until(
            [&] { return guests.size() > before && peer->state() == QAbstractSocket::ConnectedState; }));
        return peer;
    }
    std::string refusal(const char* address) {
        try {
            servers.listen(address, port, nullptr);
        } catch (const runtime::ObjectError& error) {
            return error.what();
        }
        return "not refused";
    }

    EventLoop loop;
    linux_ports::TcpServers servers{loop.watcher};
    const int port = freePort();
    std::vector<std::unique_ptr<Guest>> guests;
    std::unique_ptr<platform::TcpServer> server;
};

TEST_F(TcpServersTest, BytesGoBothWaysAndTheLastOnesComeBeforeTheEnd) {
    listen();
    const auto peer = connect();
    Guest& guest = *guests.back();
    EXPECT_EQ(guest.addresses.peer, "127.0.0.1");
    EXPECT_EQ(guest.addresses.here, "127.0.0.1");
    EXPECT_EQ(guest.connection->send("hello"), 5U);
    ASSERT_TRUE(EventLoop::until([&] { return peer->bytesAvailable() == 5; }));
    const std::string all(3000, 'x');
    peer->write(all.data(), static_cast<qint64>(all.size()));
    peer->disconnectFromHost();
    ASSERT_TRUE(EventLoop::until([&] { return guest.ended; }));
    EXPECT_EQ(guest.received, all);
    EXPECT_LE(guest.longest, 32U);
    EXPECT_LT(guest.connection->send("late"), 5U); // and no signal ends the program
}

TEST_F(TcpServersTest, AFloodDoesNotKeepOthersWaiting) {
    listen();
    const auto flood = connect();
    Guest& flooded = *guests.back();
    const auto quiet = connect();
    Guest& other = *guests.back();
    std::size_t waited = 0;
    other.onEvent = [&] { waited = flooded.received.size(); };
    const std::string much(3000, 'x');
    flood->write(much.data(), static_cast<qint64>(much.size()));
    flood->flush();
    quiet->write("me too");
    quiet->flush();
    ASSERT_TRUE(EventLoop::until([&] { return flooded.received.size() == much.size(); }));
    EXPECT_LE(waited, 20U * 32U);
    EXPECT_EQ(other.received, "me too");
}

TEST_F(TcpServersTest, ManyFloodsCostNoMoreThanOne) {
    listen();
    const std::string much(30'000, 'x');
    std::vector<std::unique_ptr<QTcpSocket>> floods;
    for (int n = 0; n < 5; ++n) {
        floods.push_back(connect());
        floods.back()->write(much.data(), static_cast<qint64>(much.size()));
    }
    for (const auto& guest : guests)
        guest->received.clear();
    QElapsedTimer clock;
    clock.start();
    EventLoop::runFor(300);
    const auto pieces = static_cast<std::size_t>(clock.elapsed()) / 10 + 2;
    std::size_t all = 0;
    for (const auto& guest : guests) {
        EXPECT_GE(guest->received.size(), 2U * 32U); // each has its turn
        all += guest->received.size();
    }
    EXPECT_LE(all, pieces * 32U);
}

TEST_F(TcpServersTest, WhatAPeerDoesNotReadIsLeftUntilThereIsRoom) {
    listen();
    const auto peer = connect();
    peer->setReadBufferSize(1);
    Guest& guest = *guests.back();
    const std::string piece(100'000, 'x');
    std::size_t sent = 0;
    while (true) {
        const std::size_t taken = guest.connection->send(piece);
        sent += taken;
        if (taken < piece.size()) break;
        ASSERT_LT(sent, 100'000'000U);
    }
    EventLoop::runFor(50);
    EXPECT_EQ(guest.writable, 0);
    peer->setReadBufferSize(0);
    std::size_t arrived = 0;
    ASSERT_TRUE(EventLoop::until([&] { return (arrived += std::size_t(peer->readAll().size())) == sent; }));
    EXPECT_TRUE(EventLoop::until([&] { return guest.writable == 1; }));
}

TEST_F(TcpServersTest, AConnectionMayGoInsideItsEventsAndWhatWasSentArrives) {
    listen();
    for (const bool inEnd : {false, true}) {
        const auto peer = connect();
        Guest& guest = *guests.back();
        guest.onEvent = [&] {
            if (inEnd && !guest.ended) return;
            guest.connection->send("bye");
            guest.connection.reset();
        };
        peer->write("one");
        if (inEnd) {
            peer->disconnectFromHost();
            ASSERT_TRUE(EventLoop::until([&] { return !guest.connection; }));
            continue;
        }
        ASSERT_TRUE(EventLoop::until([&] { return peer->state() == QAbstractSocket::UnconnectedState; }));
        EXPECT_EQ(peer->readAll(), "bye");
        EXPECT_FALSE(guest.ended);
    }
}

TEST_F(TcpServersTest, APortIsHeldAloneAndFreeAgainAtOnce) {
    listen();
    const auto peer = connect();
    EXPECT_THAT(refusal("127.0.0.1"), AllOf(HasSubstr("127.0.0.1:" + std::to_string(port)),
                                            HasSubstr("another program has this port")));
    server.reset();
    guests.back()->connection->send("connections live on");
    ASSERT_TRUE(EventLoop::until([&] { return peer->bytesAvailable() > 0; }));
    guests.clear(); // ended from this side: the kernel remembers them for a while
    listen();
    connect();
    EXPECT_THAT(refusal("203.0.113.7"), HasSubstr("does not have this address"));
    EXPECT_THAT(refusal("localhost"), HasSubstr("localhost"));
}

} // namespace
