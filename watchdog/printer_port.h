#pragma once

#include <cstdint>

namespace watchdog {

/// The printer port as the controller has it: the same claim of the kernel's, or the same I/O address.
class PrinterPort {
  public:
    // Both return an errno, 0 when the port is guarded from now on; otherwise the last one stays guarded.

    /// Owns the descriptor from now on, also where it is refused.
    int guardDescriptor(int descriptor);
    /// Asks the system for the right to this address.
    int guardAddress(std::uint32_t address);
    /// Lets go, so that another program can claim the port.
    void forget();

    /// All bits 1: every coil off. True when that was written, and when there is no port.
    bool off() const;

  private:
    int descriptor_ = -1;
    std::uint32_t address_ = 0; // 0: none
};

} // namespace watchdog
