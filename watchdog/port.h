#pragma once

#include "watchdog/messages.h"

namespace watchdog {

/// The controller's eight outputs: the same claim, lines or serial device (a shared descriptor), or the same
/// I/O address.
class Port {
  public:
    /// Carries out a request Guard…: takes ownership of the descriptor, even if it is refused. Returns an
    /// errno; 0: the new port is guarded from now on. After an error the previous port stays guarded.
    int guard(const Request& request, int descriptor);
    /// Releases the port, so that another program can claim it.
    void forget();

    /// Switches every coil off. Returns true on success, and if there is no port, or no port any more.
    bool off() const;
    /// Whether "off" has left this computer.
    bool sent() const;

  private:
    bool sendOff() const;

    Request port_;
    int descriptor_ = -1;
    std::uint32_t address_ = 0; // 0: none
};

} // namespace watchdog
