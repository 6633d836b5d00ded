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
        if (refused_.contains(settings.port)) throw runtime::ObjectError(settings.port + ": not there");
        settings_ = settings;
    }
    void keep() override {
        if (diskFull_) throw runtime::FileError("\"twinstep.ini\" cannot be written: disk full");
        kept_ = settings_;
    }
    std::vector<std::string> printerPorts() const override { return {"/dev/parport0", "/dev/parport1"}; }
    std::string outputsName() const override { return settings_.port; }
    std::string bridgeStateText() const override { return "no bridge at " + settings_.bridge; }

    /// The command line gave this setting.
    void fix(std::string platform::HardwareSettings::*setting) { fixed_ = setting; }
    void refuse(const std::string& port) { refused_.insert(port); }
    void fillDisk() { diskFull_ = true; }
    const platform::HardwareSettings& kept() const { return kept_; }

  private:
    platform::HardwareSettings settings_{.port = "simulated"};
    platform::HardwareSettings kept_;
    std::string platform::HardwareSettings::*fixed_ = nullptr;
    std::set<std::string> refused_;
    bool diskFull_ = false;
};

} // namespace simulated
