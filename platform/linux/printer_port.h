#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/printer_port.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace linux_ports {

/// A printer port through the kernel's ppdev driver (/dev/parportN), claimed exclusively for the object's
/// life.
class PrinterPort : public platform::PrinterPort {
  public:
    struct Limits {
        /// The longest time for the kernel to grant the claim.
        std::chrono::milliseconds patience{1000};
        /// The folder in which the kernel lists the drivers of each port.
        std::filesystem::path drivers = "/proc/sys/dev/parport";
    };

    /// Claims the port and makes its data lines outputs; the lines keep their levels. Throws
    /// runtime::ObjectError, naming the device and the remedy, at the latest after the allowed time.
    explicit PrinterPort(std::string device) : PrinterPort(std::move(device), Limits()) {}
    PrinterPort(std::string device, const Limits& limits);

    void clearBit(int bit) override;
    void setBit(int bit) override;
    void endPattern() override {}
    bool taken(int /*mask*/) override { return true; }

    /// The claimed port's descriptor, to share with another process: a claim belongs to the open file. It
    /// stays open as long as this object.
    int descriptor() const { return fd_.get(); }

  private:
    void write(unsigned data);

    std::string device_;
    FileDescriptor fd_;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace linux_ports
