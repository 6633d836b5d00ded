#pragma once

#include <winsock2.h>

namespace windows_ports {

/// Owns a socket.
class Socket {
  public:
    explicit Socket(SOCKET socket) : socket_(socket) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() {
        if (socket_ == INVALID_SOCKET) return;
        shutdown(socket_, SD_SEND);
        closesocket(socket_);
    }
    SOCKET get() const { return socket_; }
    explicit operator bool() const { return socket_ != INVALID_SOCKET; }

  private:
    SOCKET socket_;
};

} // namespace windows_ports
