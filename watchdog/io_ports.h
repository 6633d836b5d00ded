#pragma once

#include <cstdint>

namespace watchdog {

// The controller has its own version (platform/linux/io_ports.h), with an interface for tests. The watchdog
// uses only the C library and no exceptions.

/// Asks the system for access to an I/O port, or gives the access back. Returns an errno; ENOSYS if the
/// computer has no such ports.
int allowIoPort(std::uint32_t address, bool allowed);
/// Needs this access.
void writeIoPort(std::uint32_t address, std::uint8_t value);

} // namespace watchdog
