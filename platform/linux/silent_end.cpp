#include "platform/silent_end.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

void platform::noticeSilentEnd(std::intptr_t socket) {
    const auto set = [socket](int level, int option, int value) {
        ::setsockopt(static_cast<int>(socket), level, option, &value, sizeof value);
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, 10); // seconds of silence before the first probe
    set(IPPROTO_TCP, TCP_KEEPINTVL, 5); // seconds between probes
    set(IPPROTO_TCP, TCP_KEEPCNT, 3);   // probes without an answer that end the connection
}
