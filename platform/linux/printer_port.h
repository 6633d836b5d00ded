#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/printer_port.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace linux_ports {

/// A printer port through the kernel's ppdev driver (/dev/parportN), held alone for the object's life.
class PrinterPort : public platform::PrinterPort {
  public:
    struct Limits {
        /// How long the kernel may take to hand the port over.
        std::chrono::milliseconds patience{1000};
        /// Where the kernel names the drivers of each port.
        std::filesystem::path drivers = "/proc/sys/dev/parport";
    };

    /// Claims the port and turns its data lines to outputs, which keep the levels they have. Throws
    /// runtime::ObjectError, naming the device and what to do about it, at the latest when patience ends.
    explicit PrinterPort(std::string device) : PrinterPort(std::move(device), Limits()) {}
    PrinterPort(std::string device, const Limits& limits);

    void clearBit(int bit) override;
    void setBit(int bit) override;
    void endPattern() override {}
    bool taken(int /*mask*/) override { return true; }

    /// The claimed port, for a process that shares it: a claim belongs to the open file. It stays open as
    /// long as this object.
    int descriptor() const { return fd_.get(); }

  private:
    void write(unsigned data);

    std::string device_;
    FileDescriptor fd_;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace linux_ports
