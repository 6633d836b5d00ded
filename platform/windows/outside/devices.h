#pragma once

#include "platform/devices/devices.h"
#include "platform/windows/outside/watchdog.h"

#include <functional>
#include <memory>

namespace windows_ports {

/// The devices of a Windows computer, guarded by the watchdog.
class Devices : public devices::Devices {
  public:
    std::string automaticPort() const override;
    devices::OpenPort openPort(const std::string& setting, std::uint8_t off) override;
    void forgetPort() override;
    std::optional<std::string> identity(const std::string& device) const override;
    std::unique_ptr<platform::UsbBoard> makeBoard(int card) override;
    std::vector<platform::OutputDevice> outputDevices() const override;
    std::vector<platform::GpioLine> gpioLines(const std::string& /*chip*/) const override { return {}; }

    /// Calls back with the watchdog when the first device needs it, or at once. The watchdog lives as long as
    /// this object.
    void withWatchdog(std::function<void(Watchdog&)> use);

  private:
    Watchdog& watchdog();

    std::unique_ptr<Watchdog> watchdog_;
    std::function<void(Watchdog&)> onWatchdog_;
};

} // namespace windows_ports
