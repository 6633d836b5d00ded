#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/printer_port.h"

#include <cstdint>
#include <string>

namespace linux_ports {

/// A printer port through the kernel's ppdev driver (/dev/parportN), held alone for the object's life.
class PrinterPort : public platform::PrinterPort {
  public:
    /// Claims the port and turns its data lines to outputs, which keep the levels they have. Throws
    /// runtime::ObjectError, naming the device and what to do about it.
    explicit PrinterPort(std::string device);

    void clearBit(int bit) override;
    void setBit(int bit) override;

    /// Stays open and claimed for the object's life.
    int descriptor() const { return fd_.get(); }

  private:
    void write(unsigned data);
    /// Throws with the device's name before the words.
    [[noreturn]] void refuse(const std::string& words) const;

    std::string device_;
    FileDescriptor fd_;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace linux_ports
