#pragma once

#include <cstddef>

namespace linux_ports {

/// Sends a packet through a socket when the program crashes (SIGSEGV, SIGABRT and similar signals), and then
/// lets the crash go on. The process ends only after its core dump, which can take seconds. Only one object
/// may exist at a time.
class CrashNotice {
  public:
    /// Sends nothing before setSocket.
    CrashNotice(const void* packet, std::size_t size);
    CrashNotice(const CrashNotice&) = delete;
    CrashNotice& operator=(const CrashNotice&) = delete;
    ~CrashNotice();

    /// -1: no socket.
    static void setSocket(int socket);
};

} // namespace linux_ports
