#pragma once

#include "platform/devices/devices.h"
#include "platform/hardware.h"
#include "platform/printer_port.h"

#include <memory>
#include <optional>
#include <string>

namespace devices {

/// The port that the settings name: opened by the adapter of its kind, guarded by the watchdog, with the
/// level that energises the coils, and opened again when its board was unplugged and is back.
class ChosenPort : public platform::PrinterPort {
  public:
    explicit ChosenPort(Devices& devices) : devices_(devices) {}
    ChosenPort(const ChosenPort&) = delete;
    ChosenPort& operator=(const ChosenPort&) = delete;
    ~ChosenPort() override { close(); }

    /// Throws runtime::ObjectError; then no port is open.
    void open(const platform::HardwareSettings& settings);
    /// Stands in for a port that was refused for the reason `why`: waits for a board, else simulates. Returns
    /// what it does, as a sentence without its full stop.
    std::string standIn(const platform::HardwareSettings& settings, const std::string& why);
    /// As platform::Hardware::lookAtPort. `settings` are those in use.
    void look(const platform::HardwareSettings& settings);
    /// As platform::Hardware::outputsName.
    std::string name() const;
    /// Whether the chosen port is open and has not failed.
    bool works() const { return works_; }

    void clearBit(int bit) override;
    void setBit(int bit) override;
    void endPattern() override;
    bool taken(int mask) override;
    std::string notReady() override;

  private:
    class Lost;

    void hold(OpenPort open);
    /// Calls the port; notes a failure.
    template <class Access>
    auto call(const Access& access) -> decltype(access());
    /// Lets others have the device; from now on every write throws with this reason.
    void lose(const std::string& why);
    void release();
    void close();

    Devices& devices_;
    std::unique_ptr<platform::PrinterPort> behind_;
    std::string name_;
    std::optional<std::string> device_;   // of a board that can be unplugged
    std::optional<std::string> identity_; // of that board
    bool ready_ = false;                  // the board has been ready
    bool guarded_ = false;
    bool high_ = false;
    bool works_ = false;
};

} // namespace devices
