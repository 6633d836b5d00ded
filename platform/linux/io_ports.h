#pragma once

#include <cstdint>

namespace linux_ports {

/// Access to the processor's I/O ports. The watchdog has its own version (watchdog/io_ports.h), because it
/// uses only the C library and no exceptions.
class IoPorts {
  public:
    virtual ~IoPorts() = default;
    /// Asks the kernel to let this thread use one port; returns 0 or an errno. Without this right, read and
    /// write crash the program.
    virtual int allow(int port) = 0;
    virtual std::uint8_t read(int port) = 0;
    virtual void write(int port, std::uint8_t value) = 0;
};

/// The ports of this computer. On a processor without I/O ports every request gives ENOSYS.
IoPorts& machineIoPorts();

} // namespace linux_ports
