#pragma once

#include "platform/bridge/connection.h"
#include "platform/devices/chosen_port.h"
#include "platform/hardware.h"
#include "platform/qt/settings_file.h"
#include "platform/usb_board.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace devices {

/// The settings file, in the folder of "save.cfg".
inline constexpr const char* kSettingsFile = "twinstep.ini";

/// Where the settings say that the bridge is. Throws runtime::ObjectError if that is no address.
bridge_ports::Address bridgeAddress(const platform::HardwareSettings& settings);

/// The devices behind the output ports: opened by name, guarded by the watchdog, and exchanged while the
/// program runs. Settings come from the command line, then from the settings file, then from the defaults.
class ChosenHardware : public platform::Hardware {
  public:
    using Texts = std::map<std::string, std::string>; // settings by name

    /// Opens the devices. If a device from the command line is refused, throws runtime::ObjectError. If a
    /// device from the file or the default port is refused, something else stands in for it; see notice.
    ChosenHardware(Devices& devices, Texts given, qt_ports::SettingsFile file);

    /// The file of all settings.
    platform::Settings& file() { return file_; }
    ~ChosenHardware() override;

    /// These references stay valid when other devices are chosen.
    platform::PrinterPort& printer();
    platform::UsbBoard& board();
    /// The message for the user about a refused device or file at the start; empty if there was none.
    const std::string& notice() const { return notice_; }

    const platform::HardwareSettings& settings() const override { return settings_; }
    bool portWorks() const override;
    bool isFixed(std::string platform::HardwareSettings::*setting) const override;
    /// Whether the user has entered where the bridge is.
    bool choosesBridge() const;
    void use(const platform::HardwareSettings& settings) override;
    void openPortAnew() override;
    void keep() override;
    const std::string& lowAllowed() const override { return lowAllowed_; }
    void allowLow(const std::string& device) override;
    void lookAtPort() override;
    std::vector<platform::OutputDevice> outputDevices() const override;
    std::vector<platform::GpioLine> gpioLines(const std::string& chip) const override;
    std::string outputsName() const override;
    std::string bridgeStateText() const override { return bridgeState ? bridgeState() : std::string(); }

    /// The state text of the bridge connection.
    std::function<std::string()> bridgeState;
    /// Called with the new settings when they change.
    std::function<void(const platform::HardwareSettings&)> onUse;

  private:
    class Board;

    void readFile();
    /// Opens the port of these settings, but leaves it alone as long as the user must agree to it.
    void open(const platform::HardwareSettings& settings);
    /// The same; if opening throws, something else stands in for the port.
    void openOrStandIn(const platform::HardwareSettings& settings);

    Devices& devices_;
    const Texts given_;
    qt_ports::SettingsFile file_;
    platform::HardwareSettings settings_;
    std::string notice_;
    std::string lowAllowed_;
    ChosenPort port_;
    std::unique_ptr<Board> board_;
};

} // namespace devices
