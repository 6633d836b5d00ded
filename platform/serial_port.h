#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

/// An open serial line, 8 data bits without flow control. write and read throw runtime::ObjectError, with
/// words that follow the device's name, when the device is gone.
class SerialPort {
  public:
    virtual ~SerialPort() = default;
    /// Hands bytes to the driver and never waits. Returns how many bytes the driver has taken.
    virtual std::size_t write(std::span<const std::uint8_t> bytes) = 0;
    /// Waits until there are bytes, at most so long. Returns their number; 0 after a wake or after that time.
    virtual std::size_t read(std::span<std::uint8_t> buffer, std::chrono::nanoseconds longest) = 0;
    /// Ends the present or the next wait of read. May be called from any thread, write from one at a time.
    virtual void wake() = 0;
};

} // namespace platform
