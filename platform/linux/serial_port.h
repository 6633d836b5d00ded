#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/serial_port.h"

#include <string>

namespace linux_ports {

/// A serial device such as /dev/ttyACM0, taken for this program alone.
class SerialPort : public platform::SerialPort {
  public:
    /// Throws runtime::ObjectError, naming the device and the remedy. Most boards reset when they are opened.
    SerialPort(const std::string& device, int baud);
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    ~SerialPort() override;

    std::size_t write(std::span<const std::uint8_t> bytes) override;
    std::size_t read(std::span<std::uint8_t> buffer, std::chrono::nanoseconds longest) override;
    void wake() override;

    /// The open device, to share with another process. It stays open as long as this object.
    int descriptor() const { return fd_.get(); }

  private:
    FileDescriptor fd_;
    FileDescriptor wake_; // eventfd
};

/// The words for a device that cannot be opened for lack of permission: which group may.
std::string groupRemedy(const std::string& device);

} // namespace linux_ports
