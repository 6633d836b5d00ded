#pragma once

#include <cstdint>

namespace linux_ports {

/// The processor's own input and output ports, the part of them that needs a right. The watchdog has its own
/// (watchdog/io_ports.h), as it does without exceptions and with the C library alone.
class IoPorts {
  public:
    virtual ~IoPorts() = default;
    /// Asks the kernel to let this thread use one port; 0 or an errno. Without it, read and write end the
    /// program.
    virtual int allow(int port) = 0;
    virtual std::uint8_t read(int port) = 0;
    virtual void write(int port, std::uint8_t value) = 0;
};

/// Those of this computer. One whose processor has none answers ENOSYS.
IoPorts& machineIoPorts();

} // namespace linux_ports
