#pragma once

#include <cstdint>

namespace watchdog {

/// The controller's printer port: the same claim (a shared descriptor), or the same I/O address.
class PrinterPort {
  public:
    // Both return an errno; 0: the new port is guarded from now on. After an error the previous port stays
    // guarded.

    /// Takes ownership of the descriptor, even if it is refused.
    int guardDescriptor(int descriptor);
    /// Asks the system for access to this address.
    int guardAddress(std::uint32_t address);
    /// Releases the port, so that another program can claim it.
    void forget();

    /// Sets all bits to 1: every coil off. Returns true on success, and if there is no port.
    bool off() const;

  private:
    int descriptor_ = -1;
    std::uint32_t address_ = 0; // 0: none
};

} // namespace watchdog
