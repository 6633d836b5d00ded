#pragma once

#include "platform/devices/guarded_devices.h"
#include "platform/windows/outside/watchdog.h"

namespace windows_ports {

/// The devices of a Windows computer, guarded by the watchdog.
class Devices : public devices::GuardedDevices<Watchdog> {
  public:
    std::string automaticPort() const override;
    devices::OpenPort openPort(const std::string& setting, std::uint8_t off) override;
    std::optional<std::string> identity(const std::string& device) const override;
    std::unique_ptr<platform::UsbBoard> makeBoard(int card) override;
    std::vector<platform::OutputDevice> outputDevices() const override;
    std::vector<platform::GpioLine> gpioLines(const std::string& /*chip*/) const override { return {}; }
};

} // namespace windows_ports
