#pragma once

#include "platform/hardware.h"
#include "platform/printer_port.h"
#include "platform/usb_board.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace devices {

/// An open port.
struct OpenPort {
    std::unique_ptr<platform::PrinterPort> port;
    std::string name;                     // for the status bar
    std::optional<std::string> unplugged; // the device's name, if it can be unplugged
};

/// The devices of one operating system. What is open is guarded by the system's watchdog.
class Devices {
  public:
    virtual ~Devices() = default;

    /// The port that the setting "auto" stands for, perhaps "simulated".
    virtual std::string automaticPort() const = 0;
    /// `setting` names a device, as in platform::HardwareSettings; at the levels `off` no coil is energised.
    /// Throws runtime::ObjectError, naming the device and the reason.
    virtual OpenPort openPort(const std::string& setting, std::uint8_t off) = 0;
    /// Call it as soon as the open port is destroyed, which sends its last pattern.
    virtual void forgetPort() = 0;
    /// Another device of the same name has another identity; empty while there is none.
    virtual std::optional<std::string> identity(const std::string& device) const = 0;
    /// The K8055 board with this address, 0 to 3.
    virtual std::unique_ptr<platform::UsbBoard> makeBoard(int card) = 0;

    /// As platform::Hardware's.
    virtual std::vector<platform::OutputDevice> outputDevices() const = 0;
    virtual std::vector<platform::GpioLine> gpioLines(const std::string& chip) const = 0;
};

} // namespace devices
