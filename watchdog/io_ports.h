#pragma once

#include <cstdint>

namespace watchdog {

/// Asks the system for the right to an I/O port, or gives it back. Returns an errno, ENOSYS where a computer
/// has no such ports.
int allowIoPort(std::uint32_t address, bool allowed);
/// Needs that right.
void writeIoPort(std::uint32_t address, std::uint8_t value);

} // namespace watchdog
