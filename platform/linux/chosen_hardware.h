#pragma once

#include "platform/hardware.h"
#include "platform/linux/watchdog.h"
#include "platform/printer_port.h"
#include "platform/qt/settings_file.h"
#include "platform/usb_board.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace linux_ports {

/// Where the user's choices live, beside "save.cfg".
inline constexpr const char* kSettingsFile = "twinstep.ini";

/// The devices behind the output ports: opened by name, guarded by the watchdog, and exchanged while the
/// program runs. Settings come from the command line, then from the settings file, then from the defaults.
class ChosenHardware : public platform::Hardware {
  public:
    using Texts = std::map<std::string, std::string>; // settings by name

    /// Opens the devices. One that the command line named and that is refused throws runtime::ObjectError;
    /// for one that the file named, and for the usual port, the outputs are simulated instead, see notice.
    ChosenHardware(Texts given, qt_ports::SettingsFile file);

    /// The file of all settings.
    platform::Settings& file() { return file_; }
    ~ChosenHardware() override;

    /// The same objects whatever is behind them.
    platform::PrinterPort& printer();
    platform::UsbBoard& board();
    /// What the user must know about the start: a device or a file that was refused. Empty when all is well.
    const std::string& notice() const { return notice_; }

    const platform::HardwareSettings& settings() const override { return settings_; }
    bool portWorks() const override;
    bool isFixed(std::string platform::HardwareSettings::*setting) const override;
    void use(const platform::HardwareSettings& settings) override;
    void openPortAnew() override;
    void keep() override;
    std::vector<std::string> printerPorts() const override;
    std::string outputsName() const override;
    std::string bridgeStateText() const override { return bridgeState ? bridgeState() : std::string(); }

    /// What the bridge's link says of itself.
    std::function<std::string()> bridgeState;
    /// Told the settings that are in use from now on.
    std::function<void(const platform::HardwareSettings&)> onUse;
    /// Hands the watchdog over when the first real device needs one, or at once; it lives as long as this
    /// object.
    void withWatchdog(std::function<void(Watchdog&)> use);

  private:
    class Port;
    class Board;

    void readFile();
    /// As Port::open; simulates where that throws.
    void openOrSimulate(const std::string& setting);
    Watchdog& watchdog();

    const Texts given_;
    qt_ports::SettingsFile file_;
    platform::HardwareSettings settings_;
    std::string notice_;
    std::unique_ptr<Watchdog> watchdog_; // outlives the devices
    std::unique_ptr<Port> port_;
    std::unique_ptr<Board> board_;
    std::function<void(Watchdog&)> onWatchdog_;
};

} // namespace linux_ports
