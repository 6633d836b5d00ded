#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform {

/// The user's choice of devices and links, in the form of the command line.
struct HardwareSettings {
    /// "simulated", a device "/dev/parportN", an I/O address "0x378", "firmata:DEVICE[:PINS][:BAUD]",
    /// "gpio:CHIP[:LINES]", or "auto": /dev/parport0 where it can be claimed, else simulated.
    std::string port = "auto";
    /// The level that energises a coil: "low" or "high", or "auto": the usual one of the port.
    std::string coilsOn = "auto";
    std::string usb = "none"; // or "simulated", or "k8055:0" to "k8055:3"
    std::string n1mmListen = "127.0.0.1";
    std::string trackingServer = "127.0.0.1"; // host name or address
    std::string bridge = "127.0.0.1:7380";    // HOST[:PORT]
    std::string rigctld = "127.0.0.1:4532";   // HOST[:PORT] of Hamlib's daemon, which knows the frequency
    std::string rotctld = "127.0.0.1:4533";   // [ADDRESS:]PORT to listen at, or "off"
    std::string rotctldAllow = "";            // ADDRESS[,ADDRESS...] of other computers that may connect

    bool operator==(const HardwareSettings&) const = default;
};

/// A device of this computer for the outputs.
struct OutputDevice {
    std::string port; // as in HardwareSettings
    std::string name; // for the user
};

/// A line of a GPIO chip.
struct GpioLine {
    std::string name;           // may be empty
    std::string user;           // who has taken it; empty: nobody
    std::optional<bool> atBoot; // the level until a program uses it, where that is known
};

/// The devices and links behind the ports, which the user can change while the program runs.
class Hardware {
  public:
    virtual ~Hardware() = default;
    /// The chosen settings.
    virtual const HardwareSettings& settings() const = 0;
    /// Whether the chosen printer port is in use and has accepted all writes so far.
    virtual bool portWorks() const = 0;
    /// Whether the command line gave this setting, so that it cannot be changed until the next start.
    virtual bool isFixed(std::string HardwareSettings::*setting) const = 0;
    /// Switches to other devices and links. Precondition: the outputs are off. Closes the previous USB board
    /// if another board is chosen. Throws runtime::ObjectError, naming what was refused; the previous devices
    /// are then restored as far as possible. "low" on an Arduino is left unopened unless the user has agreed.
    virtual void use(const HardwareSettings& settings) = 0;
    /// Tries the chosen printer port again. Throws runtime::ObjectError, naming what was refused; then an
    /// Arduino is waited for, and in place of another port the outputs are simulated.
    virtual void openPortAnew() = 0;
    /// Stores the settings for the next start; the stored value of a fixed setting is not changed. Throws
    /// runtime::FileError.
    virtual void keep() = 0;
    /// The device of the Arduino on which the user has agreed to "low", which holds all coils on while
    /// Twinstep is not connected; empty: none.
    virtual const std::string& lowAllowed() const = 0;
    /// The user agrees, for this start and later ones. Then call openPortAnew if the port is chosen already.
    virtual void allowLow(const std::string& device) = 0;
    /// Call it once a second: throws runtime::ObjectError, once, when the port has failed although nothing
    /// was written; opens a device again that was unplugged and is back.
    virtual void lookAtPort() = 0;
    virtual std::vector<OutputDevice> outputDevices() const = 0;
    /// The lines of "gpiochip0", by their numbers; empty if there is no such chip or no permission.
    virtual std::vector<GpioLine> gpioLines(const std::string& chip) const = 0;
    /// The name of the port in the status bar, with its state if it is not ready: "/dev/parport0",
    /// "simulated", "Arduino ttyACM0 is starting".
    virtual std::string outputsName() const = 0;
    /// The state of the link to the bridge, in one line: "bridge 127.0.0.1:7380 connected".
    virtual std::string bridgeStateText() const = 0;
};

} // namespace platform
