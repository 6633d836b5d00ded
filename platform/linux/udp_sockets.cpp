#include "platform/linux/udp_sockets.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"

#include <arpa/inet.h>
#include <cerrno>
#include <sys/socket.h>
#include <vector>

namespace linux_ports {

namespace {

/// The longest payload that UDP over IPv4 can carry.
constexpr std::size_t kLongestDatagram = 65507;
/// At most this many datagrams are read at once; then reading pauses, so that a flood of datagrams does not
/// delay the step timers. Station programs send a few in a second.
constexpr int kDatagramsAtOnce = 16;
constexpr std::chrono::milliseconds kRest{10};

class Socket : public platform::UdpSocket {
  public:
    Socket(FdWatcher& watcher, FileDescriptor fd, platform::UdpSockets::Receiver receiver)
        : state_(std::make_shared<State>(std::move(fd), std::move(receiver))),
          // The receiver may close this socket, so keep the running handler alive.
          watch_(watcher.watch(
              state_->fd.get(), [state = state_] { drain(*state); }, kRest)) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() override {
        state_->open = false;
        watch_.reset();
        state_->fd = FileDescriptor();
    }

  private:
    struct State {
        State(FileDescriptor socket, platform::UdpSockets::Receiver call)
            : fd(std::move(socket)), receiver(std::move(call)) {}
        FileDescriptor fd;
        platform::UdpSockets::Receiver receiver;
        std::vector<char> buffer = std::vector<char>(kLongestDatagram);
        bool open = true;
    };

    static void drain(State& state) {
        for (int taken = 0; taken < kDatagramsAtOnce && state.open; ++taken) {
            const ssize_t size = ::recv(state.fd.get(), state.buffer.data(), state.buffer.size(), 0);
            // No datagram left, or an error report of an undelivered packet: the socket is still usable.
            if (size < 0) return;
            state.receiver(std::string(state.buffer.data(), static_cast<std::size_t>(size)));
        }
    }

    std::shared_ptr<State> state_;
    std::unique_ptr<FdWatch> watch_;
};

} // namespace

std::optional<in_addr> parseAddress(const std::string& text) {
    in_addr address{};
    if (::inet_pton(AF_INET, text.c_str(), &address) != 1) return std::nullopt;
    return address;
}

std::unique_ptr<platform::UdpSocket> UdpSockets::bind(int port, Receiver receiver) {
    const auto refuse = [port](int error) {
        throw runtime::ObjectError("UDP port " + std::to_string(port) + ": " + reason(error));
    };
    if (port < 1 || port > 65535) refuse(EINVAL);
    FileDescriptor fd(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!fd) refuse(errno);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(static_cast<std::uint16_t>(port));
    name.sin_addr = address_;
    if (::bind(fd.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0) refuse(errno);
    return std::make_unique<Socket>(watcher_, std::move(fd), std::move(receiver));
}

} // namespace linux_ports
