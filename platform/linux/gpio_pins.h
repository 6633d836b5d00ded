#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/printer_port.h"

#include <array>
#include <string>

namespace linux_ports {

/// Eight lines of a GPIO chip through the kernel's character device, in one request: one call of the kernel
/// outputs a pattern. The kernel's own interface is used, because the library of Debian 12 does not hand out
/// the request's descriptor, which the watchdog must share.
class GpioPins : public platform::PrinterPort {
  public:
    /// `chip` is "gpiochip0"; `lines` are those of outputs 1 to 8, `off` the levels, in bits 0 to 7, that the
    /// lines get at once. Throws runtime::ObjectError, naming the chip, a taken line and the remedy.
    GpioPins(std::string chip, const std::array<int, 8>& lines, int off);

    void clearBit(int bit) override { levels_ &= ~(1U << bit); }
    void setBit(int bit) override { levels_ |= 1U << bit; }
    void endPattern() override;
    bool taken(int /*mask*/) override { return true; }

    /// The request's descriptor, to share with another process: the lines belong to it until the last copy is
    /// closed. It stays open as long as this object.
    int descriptor() const { return fd_.get(); }

  private:
    std::string chip_;
    FileDescriptor fd_;
    unsigned levels_;
};

} // namespace linux_ports
