#include <winsock2.h>
// After the header above, which would otherwise clash with the older one in <windows.h>.
#include "platform/windows/outside/udp_sockets.h"
#include "platform/windows/socket.h"
#include "platform/windows/text.h"
#include "platform/windows/window.h"
#include "runtime/errors.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>
#include <ws2tcpip.h>

namespace windows_ports {

namespace {

constexpr UINT kSocketEvent = WM_APP;
constexpr std::size_t kLongestDatagram = 65507; // over IPv4
/// One datagram for each message of the system, and then a rest, so that a flood does not delay the step
/// timers.
constexpr UINT kRestMilliseconds = 10;
constexpr int kDatagramsAtOnce = 16;

class BoundSocket : public platform::UdpSocket {
  public:
    BoundSocket(const std::string& address, int port, platform::UdpSockets::Receiver receiver)
        : receiver_(std::make_shared<platform::UdpSockets::Receiver>(std::move(receiver))),
          socket_(WSASocketW(AF_INET, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0,
                             WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT)),
          window_(Window::Kind::MessageOnly, [this](UINT message, WPARAM, LPARAM) {
              if (message == WM_TIMER) listen();
              if (message == kSocketEvent) drain();
              return std::optional<LRESULT>();
          }) {
        const auto refuse = [port](int error) {
            throw runtime::ObjectError("UDP port " + std::to_string(port) + ": " +
                                       reason(static_cast<unsigned long>(error)));
        };
        if (port < 1 || port > 65535) refuse(WSAEINVAL);
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_port = htons(static_cast<u_short>(port));
        const BOOL alone = TRUE;
        if (!socket_ || inet_pton(AF_INET, address.c_str(), &where.sin_addr) != 1 ||
            setsockopt(socket_.get(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&alone),
                       sizeof alone) != 0 ||
            ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
            !listen()) {
            refuse(WSAGetLastError());
        }
    }

  private:
    bool listen() {
        KillTimer(window_.handle(), 1);
        return WSAAsyncSelect(socket_.get(), window_.handle(), kSocketEvent, FD_READ) == 0;
    }

    void drain() {
        const auto receiver = receiver_; // this object may go in the call
        for (int taken = 0; taken < kDatagramsAtOnce && receiver.use_count() > 1; ++taken) {
            const int size = recv(socket_.get(), buffer_.data(), static_cast<int>(buffer_.size()), 0);
            // No datagram left, or the report of one that could not be delivered.
            if (size < 0) break;
            (*receiver)(std::string(buffer_.data(), static_cast<std::size_t>(size)));
        }
        if (receiver.use_count() == 1) return;
        WSAAsyncSelect(socket_.get(), window_.handle(), 0, 0);
        SetTimer(window_.handle(), 1, kRestMilliseconds, nullptr);
    }

    std::shared_ptr<platform::UdpSockets::Receiver> receiver_;
    std::vector<char> buffer_ = std::vector<char>(kLongestDatagram);
    Socket socket_;
    Window window_;
};

} // namespace

std::unique_ptr<platform::UdpSocket> UdpSockets::bind(int port, Receiver receiver) {
    return std::make_unique<BoundSocket>(address_, port, std::move(receiver));
}

} // namespace windows_ports
