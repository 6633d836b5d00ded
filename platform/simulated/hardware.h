#pragma once

#include "platform/hardware.h"
#include "runtime/errors.h"

#include <set>
#include <string>
#include <vector>

namespace simulated {

/// Devices and links that exist only in memory.
class Hardware : public platform::Hardware {
  public:
    const platform::HardwareSettings& settings() const override { return settings_; }
    bool portWorks() const override { return !refused_.contains(settings_.port); }
    bool isFixed(std::string platform::HardwareSettings::*setting) const override {
        return setting == fixed_;
    }
    void use(const platform::HardwareSettings& settings) override {
        if (settings.port != settings_.port && refused_.contains(settings.port))
            throw runtime::ObjectError(settings.port + ": not there");
        settings_ = settings;
    }
    void openPortAnew() override {
        if (!portWorks()) throw runtime::ObjectError(settings_.port + ": not there");
    }
    void keep() override {
        if (diskFull_) throw runtime::FileError("\"twinstep.ini\" cannot be written: disk full");
        kept_ = settings_;
    }
    const std::string& lowAllowed() const override { return lowAllowed_; }
    void allowLow(const std::string& device) override { lowAllowed_ = device; }
    void lookAtPort() override {}
    std::vector<platform::OutputDevice> outputDevices() const override {
        return {{"/dev/parport0", "/dev/parport0"},
                {"/dev/parport1", "/dev/parport1"},
                {"firmata:/dev/ttyACM0", "Arduino Uno (ttyACM0)"},
                {"firmata:/dev/ttyACM1", "Arduino Mega (ttyACM1)"},
                {"gpio:gpiochip0", "Pins of pinctrl-bcm2835 (gpiochip0)"}};
    }
    std::vector<platform::GpioLine> gpioLines(const std::string& chip) const override {
        if (chip != "gpiochip0") return {};
        std::vector<platform::GpioLine> lines(28);
        for (std::size_t number = 0; number < lines.size(); ++number)
            lines[number] = {"GPIO" + std::to_string(number), "", number <= 8};
        lines[9].atBoot.reset();
        lines[10].user = "spi0";
        return lines;
    }
    std::string outputsName() const override { return settings_.port; }
    std::string bridgeStateText() const override { return "no bridge at " + settings_.bridge; }

    /// The command line gave this setting.
    void fix(std::string platform::HardwareSettings::*setting) { fixed_ = setting; }
    void refuse(const std::string& port) { refused_.insert(port); }
    void accept(const std::string& port) { refused_.erase(port); }
    void fillDisk() { diskFull_ = true; }
    const platform::HardwareSettings& kept() const { return kept_; }

  private:
    platform::HardwareSettings settings_{.port = "simulated"};
    platform::HardwareSettings kept_;
    std::string lowAllowed_;
    std::string platform::HardwareSettings::*fixed_ = nullptr;
    std::set<std::string> refused_;
    bool diskFull_ = false;
};

} // namespace simulated
