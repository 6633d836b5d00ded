#include <winsock2.h>
// After the header above, which would otherwise clash with the older one in <windows.h>.
#include "platform/windows/outside/udp_sockets.h"
#include "platform/windows/socket.h"
#include "platform/windows/tcp_servers.h"
#include "runtime/errors.h"
#include "tests/platform/windows/pump.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

constexpr int kPort = 23'061;

/// Another program, with a socket of its own.
class Sender {
  public:
    bool send(const std::string& datagram) {
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_port = htons(kPort);
        where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return sendto(socket_.get(), datagram.data(), static_cast<int>(datagram.size()), 0,
                      reinterpret_cast<const sockaddr*>(&where),
                      sizeof where) == static_cast<int>(datagram.size());
    }

  private:
    windows_ports::Socket socket_{::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP)};
};

TEST(WindowsUdpSockets, HearDatagramsUntilTheyAreClosedAndKeepTheirPort) {
    const windows_ports::TcpServers winsock; // starts it
    windows_ports::UdpSockets sockets("127.0.0.1");
    Sender sender;
    std::vector<std::string> heard;
    std::unique_ptr<platform::UdpSocket> socket;
    socket = sockets.bind(kPort, [&](const std::string& datagram) {
        heard.push_back(datagram);
        if (datagram == "last") socket.reset(); // inside its own call
    });
    EXPECT_THAT([&] { sockets.bind(kPort, [](const std::string&) {}); },
                ThrowsMessage<runtime::ObjectError>(HasSubstr("UDP port 23061: ")));
    // More than it takes at once.
    std::vector<std::string> sent;
    for (int number = 0; number < 40; ++number)
        sent.push_back(std::to_string(number));
    sent.emplace_back("last");
    for (const std::string& datagram : sent)
        ASSERT_TRUE(sender.send(datagram));
    EXPECT_TRUE(pumpUntil([&] { return !socket; }));
    EXPECT_EQ(heard, sent);
    socket = sockets.bind(kPort, [](const std::string&) {});
    EXPECT_TRUE(socket);
}

} // namespace
