#pragma once

#include "config/hardware_settings.h"
#include "platform/devices/guarded_devices.h"
#include "platform/linux/watchdog.h"

namespace linux_ports {

/// The devices of a Linux computer, guarded by the watchdog.
class Devices : public devices::GuardedDevices<Watchdog> {
  public:
    std::string automaticPort() const override;
    devices::OpenPort openPort(const std::string& setting, std::uint8_t off) override;
    std::optional<std::string> identity(const std::string& device) const override;
    std::unique_ptr<platform::UsbBoard> makeBoard(int card) override;
    std::vector<platform::OutputDevice> outputDevices() const override;
    std::vector<platform::GpioLine> gpioLines(const std::string& chip) const override;

  private:
    devices::OpenPort openBoard(const config::SerialBoard& board, std::uint8_t off);
};

} // namespace linux_ports
