#include "platform/silent_end.h"

#include <winsock2.h>
// After the header above, whose types it uses.
#include <mstcpip.h>

void platform::noticeSilentEnd(std::intptr_t socket) {
    // Milliseconds of silence before the first probe, and between the ten probes that the system sends.
    tcp_keepalive settings{.onoff = 1, .keepalivetime = 10'000, .keepaliveinterval = 2'000};
    DWORD size = 0;
    WSAIoctl(static_cast<SOCKET>(socket), SIO_KEEPALIVE_VALS, &settings, sizeof settings, nullptr, 0, &size,
             nullptr, nullptr);
}
