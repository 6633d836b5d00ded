#include "event_loop.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/udp_sockets.h"
#include "runtime/errors.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <string>
#include <sys/socket.h>
#include <vector>

using linux_ports::parseAddress;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

/// Another program on this computer.
class Peer {
  public:
    Peer() : fd_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in name = loopback(0);
        ::bind(fd_.get(), reinterpret_cast<sockaddr*>(&name), sizeof name);
    }
    int port() const {
        sockaddr_in name{};
        socklen_t size = sizeof name;
        ::getsockname(fd_.get(), reinterpret_cast<sockaddr*>(&name), &size);
        return ntohs(name.sin_port);
    }
    void send(int port, const std::string& datagram) const {
        const sockaddr_in to = loopback(port);
        EXPECT_EQ(::sendto(fd_.get(), datagram.data(), datagram.size(), 0,
                           reinterpret_cast<const sockaddr*>(&to), sizeof to),
                  static_cast<ssize_t>(datagram.size()));
    }

  private:
    static sockaddr_in loopback(int port) {
        sockaddr_in name{};
        name.sin_family = AF_INET;
        name.sin_port = htons(static_cast<std::uint16_t>(port));
        name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return name;
    }
    linux_ports::FileDescriptor fd_;
};

struct UdpSockets : ::testing::Test {
    EventLoop loop;
    linux_ports::UdpSockets sockets{loop.watcher, *parseAddress("127.0.0.1")};
    Peer peer;
    std::vector<std::string> received;
    /// A port that was free a moment ago.
    int port = Peer().port();

    std::unique_ptr<platform::UdpSocket> bind() {
        return sockets.bind(port, [this](const std::string& datagram) { received.push_back(datagram); });
    }
    bool receives(std::size_t count) {
        return EventLoop::until([&] { return received.size() >= count; });
    }
};

} // namespace

TEST_F(UdpSockets, BringDatagramsOfEverySizeInOrder) {
    const auto socket = bind();
    const std::string binary("\0<TXFreq>\xff", 10), longest(65507, 'x');
    for (const auto& datagram : {std::string("first"), std::string(), binary, longest})
        peer.send(port, datagram);
    ASSERT_TRUE(receives(4));
    EXPECT_THAT(received, ElementsAre("first", "", binary, longest));
}

TEST_F(UdpSockets, AFloodDoesNotKeepOthersWaiting) {
    const auto flooded = bind();
    const int quietPort = Peer().port();
    std::size_t waited = 0;
    const auto quiet = sockets.bind(quietPort, [&](const std::string&) { waited = received.size(); });
    for (int n = 0; n < 100; ++n)
        peer.send(port, std::to_string(n));
    peer.send(quietPort, "me too");
    ASSERT_TRUE(receives(100));
    EXPECT_LE(waited, 64u);
    EXPECT_EQ(received.back(), "99");
}

TEST_F(UdpSockets, AReceiverMayCloseItsSocketAndThePortIsFreeAgain) {
    std::unique_ptr<platform::UdpSocket> socket;
    int calls = 0;
    socket = sockets.bind(port, [&](const std::string&) {
        ++calls;
        socket.reset();
    });
    peer.send(port, "one");
    peer.send(port, "two");
    ASSERT_TRUE(EventLoop::until([&] { return calls > 0; }));
    EventLoop::runFor(20);
    EXPECT_EQ(calls, 1);

    socket = bind();
    peer.send(port, "three");
    ASSERT_TRUE(receives(1));
    EXPECT_THAT(received, ElementsAre("three"));
}

TEST_F(UdpSockets, RefusalNamesPortAndReason) {
    const auto why = [](linux_ports::UdpSockets& from, int number) -> std::string {
        try {
            from.bind(number, [](const std::string&) {});
        } catch (const runtime::ObjectError& error) {
            return error.what();
        }
        return "not refused";
    };
    EXPECT_THAT(why(sockets, peer.port()),
                AllOf(HasSubstr(std::to_string(peer.port())), HasSubstr("in use")));
    EXPECT_THAT(why(sockets, 70000), HasSubstr("70000"));
    linux_ports::UdpSockets elsewhere(loop.watcher, *parseAddress("203.0.113.7"));
    EXPECT_THAT(why(elsewhere, port), HasSubstr("Cannot assign"));
}

TEST(UdpAddress, OnlyDottedIpv4IsUnderstood) {
    EXPECT_EQ(parseAddress("192.168.1.20")->s_addr, inet_addr("192.168.1.20"));
    EXPECT_EQ(parseAddress("0.0.0.0")->s_addr, INADDR_ANY);
    for (const char* wrong : {"", "localhost", "192.168.1", "1.2.3.256", "1.2.3.4 ", "::1", "1.2.3.4:5"}) {
        EXPECT_FALSE(parseAddress(wrong)) << wrong;
    }
}
