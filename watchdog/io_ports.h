#pragma once

#include <cstdint>

namespace watchdog {

// The controller has its own (platform/linux/io_ports.h), with an interface for its tests; here nothing but
// the C library is at hand, and no exceptions.

/// Asks the system for the right to an I/O port, or gives it back. Returns an errno, ENOSYS where a computer
/// has no such ports.
int allowIoPort(std::uint32_t address, bool allowed);
/// Needs that right.
void writeIoPort(std::uint32_t address, std::uint8_t value);

} // namespace watchdog
