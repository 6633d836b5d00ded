#pragma once

#include <cstddef>

namespace linux_ports {

/// Sends a packet through a socket at the first sign of a crash (SIGSEGV, SIGABRT and their like), and lets
/// the crash take its course. The end of a process comes only after its core dump, which can take seconds.
/// One object at a time.
class CrashNotice {
  public:
    /// Sends nothing before setSocket.
    CrashNotice(const void* packet, std::size_t size);
    CrashNotice(const CrashNotice&) = delete;
    CrashNotice& operator=(const CrashNotice&) = delete;
    ~CrashNotice();

    /// -1: none.
    static void setSocket(int socket);
};

} // namespace linux_ports
