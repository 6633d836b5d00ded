#pragma once

#include "config/hardware_settings.h"
#include "platform/hardware.h"
#include "platform/linux/watchdog.h"
#include "platform/printer_port.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>

namespace linux_ports {

/// The port that the settings name: opened by the adapter of its kind, guarded by the watchdog, with the
/// level that energises the coils, and opened again when its board was unplugged and is back.
class ChosenPort : public platform::PrinterPort {
  public:
    /// `watchdog` starts the watchdog when it is called first.
    explicit ChosenPort(std::function<Watchdog&()> watchdog) : watchdog_(std::move(watchdog)) {}
    ChosenPort(const ChosenPort&) = delete;
    ChosenPort& operator=(const ChosenPort&) = delete;
    ~ChosenPort() override { close(); }

    /// Throws runtime::ObjectError; then no port is open.
    void open(const platform::HardwareSettings& settings);
    /// Uses a simulated port instead of a refused port.
    void simulate();
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

    /// A device as it was when it was opened: another device of the same name has another node.
    struct Node {
        std::string device;
        dev_t number;
        ino_t file;
        bool operator==(const Node&) const = default;
        static std::optional<Node> of(const std::string& device);
    };

    void openBoard(const config::SerialBoard& board, std::uint8_t off);
    void hold(std::unique_ptr<platform::PrinterPort> port, const std::string& name);
    /// Calls the port; notes a failure.
    template <class Access>
    auto call(const Access& access) -> decltype(access());
    /// Lets others have the device; from now on every write throws with this reason.
    void lose(const std::string& why);
    void release();
    void close();

    std::function<Watchdog&()> watchdog_;
    std::unique_ptr<platform::PrinterPort> behind_;
    std::string name_;
    std::optional<Node> node_; // of a board that can be unplugged
    bool ready_ = false;       // the board has been ready
    bool guarded_ = false;
    bool high_ = false;
    bool works_ = false;
};

} // namespace linux_ports
