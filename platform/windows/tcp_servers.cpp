#include <winsock2.h>
// After the header above, which would otherwise clash with the older one in <windows.h>.
#include "platform/windows/socket.h"
#include "platform/windows/tcp_servers.h"
#include "platform/windows/text.h"
#include "platform/windows/window.h"
#include "runtime/errors.h"

#include <array>
#include <optional>
#include <utility>
#include <ws2tcpip.h>

namespace windows_ports {

namespace {

constexpr UINT kSocketEvent = WM_APP;
constexpr std::size_t kPiece = 4 * 1024; // bytes read at once, so that others have their turn

class Connection : public platform::TcpConnection {
  public:
    explicit Connection(SOCKET socket)
        : socket_(socket), window_(Window::Kind::MessageOnly, [this](UINT message, WPARAM, LPARAM event) {
              if (message == kSocketEvent) handle(WSAGETSELECTEVENT(event));
              return std::optional<LRESULT>();
          }) {}

    void start(Events events) override {
        events_ = std::make_shared<Events>(std::move(events));
        const BOOL atOnce = TRUE;
        setsockopt(socket_.get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&atOnce),
                   sizeof atOnce);
        WSAAsyncSelect(socket_.get(), window_.handle(), kSocketEvent, FD_READ | FD_WRITE | FD_CLOSE);
    }

    std::size_t send(std::string_view bytes) override {
        const int sent = ::send(socket_.get(), bytes.data(), static_cast<int>(bytes.size()), 0);
        return sent > 0 ? static_cast<std::size_t>(sent) : 0;
    }

  private:
    void handle(int event) {
        // This object may go during an event.
        const auto events = events_;
        switch (event) {
        case FD_READ:
            // If more bytes wait, the system reports again.
            receive(*events);
            break;
        case FD_WRITE:
            events->writable();
            break;
        case FD_CLOSE:
            // The last words of the peer may still be waiting. The other reference is this connection's, as
            // long as it is there.
            while (events.use_count() > 1 && receive(*events)) {
            }
            if (events.use_count() > 1) events->ended();
            break;
        default:
            break;
        }
    }

    bool receive(const Events& events) {
        std::array<char, kPiece> piece;
        const int size = recv(socket_.get(), piece.data(), static_cast<int>(piece.size()), 0);
        if (size > 0) events.received({piece.data(), static_cast<std::size_t>(size)});
        return size > 0;
    }

    Socket socket_;
    std::shared_ptr<Events> events_;
    Window window_;
};

class Listener : public platform::TcpServer {
  public:
    Listener(const std::string& address, int port, platform::TcpServers::Accepted accepted)
        : accepted_(std::move(accepted)),
          socket_(WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                             WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT)),
          window_(Window::Kind::MessageOnly, [this](UINT message, WPARAM, LPARAM event) {
              if (message == kSocketEvent && WSAGETSELECTEVENT(event) == FD_ACCEPT) accept();
              return std::optional<LRESULT>();
          }) {
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_port = htons(static_cast<u_short>(port));
        // Without it another program could take the port, and with it our clients.
        const BOOL alone = TRUE;
        if (!socket_ || inet_pton(AF_INET, address.c_str(), &where.sin_addr) != 1 ||
            setsockopt(socket_.get(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&alone),
                       sizeof alone) != 0 ||
            bind(socket_.get(), reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
            ::listen(socket_.get(), SOMAXCONN) != 0 ||
            WSAAsyncSelect(socket_.get(), window_.handle(), kSocketEvent, FD_ACCEPT) != 0) {
            const int error = WSAGetLastError();
            throw runtime::ObjectError("Cannot listen on " + address + ":" + std::to_string(port) + ": " +
                                       why(error));
        }
    }

  private:
    static std::string why(int error) {
        if (error == WSAEADDRINUSE || error == WSAEACCES) return "another program has this port";
        if (error == WSAEADDRNOTAVAIL) return "this computer does not have this address";
        return reason(static_cast<unsigned long>(error));
    }

    static std::string textOf(const sockaddr_in& address) {
        std::array<char, INET_ADDRSTRLEN> text{};
        inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
        return text.data();
    }

    void accept() {
        sockaddr_in peer{};
        int size = sizeof peer;
        const SOCKET socket = ::accept(socket_.get(), reinterpret_cast<sockaddr*>(&peer), &size);
        if (socket == INVALID_SOCKET) return; // the peer has gone again
        sockaddr_in here{};
        getsockname(socket, reinterpret_cast<sockaddr*>(&here), &size);
        std::unique_ptr<Connection> connection;
        try {
            connection = std::make_unique<Connection>(socket);
        } catch (const runtime::ObjectError&) {
            return; // no window left for it: the peer sees its connection closed
        }
        accepted_(std::move(connection), {textOf(peer), textOf(here)});
    }

    platform::TcpServers::Accepted accepted_;
    Socket socket_;
    Window window_;
};

} // namespace

TcpServers::TcpServers() {
    WSADATA data;
    if (const int error = WSAStartup(MAKEWORD(2, 2), &data); error != 0)
        throw runtime::ObjectError("There is no network: " + reason(static_cast<unsigned long>(error)));
}

TcpServers::~TcpServers() {
    WSACleanup();
}

std::unique_ptr<platform::TcpServer> TcpServers::listen(const std::string& address, int port,
                                                        Accepted accepted) {
    return std::make_unique<Listener>(address, port, std::move(accepted));
}

} // namespace windows_ports
