#pragma once

#include "platform/hardware.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads and checks the texts of platform::HardwareSettings.
namespace config {

inline constexpr const char* kAutomatic = "auto";
inline constexpr const char* kSimulated = "simulated";
inline constexpr const char* kNone = "none";
inline constexpr const char* kOff = "off";
inline constexpr const char* kLow = "low";
inline constexpr const char* kHigh = "high";

/// The I/O address in a port setting such as "0x378": 0x100 to 0xFFF0, a multiple of 4. Empty for any other
/// text.
std::optional<std::uint16_t> ioAddress(std::string_view port);

inline constexpr std::size_t kOutputs = 8;

/// An Arduino with StandardFirmata.
struct SerialBoard {
    std::string device;             // "/dev/ttyACM0", "COM3"
    std::array<int, kOutputs> pins; // of outputs 1 to 8; 2 to 127, as 0 and 1 are the serial line
    int baud;                       // 9600 to 1000000
    bool operator==(const SerialBoard&) const = default;
};
inline constexpr const char* kUsualPins = "2,3,4,5,6,7,8,9";

/// The parts of "firmata:DEVICE[:PINS][:BAUD]", PINS eight numbers with commas between; without them,
/// kUsualPins and 57600, which the sketch sets. Empty for any other text.
std::optional<SerialBoard> serialBoard(std::string_view port);

/// Lines of a GPIO chip of the kernel.
struct GpioLines {
    std::string chip;                // "gpiochip0"
    std::array<int, kOutputs> lines; // of outputs 1 to 8; 0 to 1023
    bool operator==(const GpioLines&) const = default;
};
/// Of a Raspberry Pi; all are pulled to 0 until a program uses them.
inline constexpr const char* kUsualLines = "17,27,22,23,24,25,16,26";

/// The parts of "gpio:CHIP[:LINES]"; without LINES, kUsualLines. Empty for any other text.
std::optional<GpioLines> gpioLines(std::string_view port);

/// Whether a 1 energises a coil. `coilsOn` as in platform::HardwareSettings; without a choice there, a 1 does
/// at a board and at lines, a 0 at a printer port.
bool coilsOnHigh(const platform::HardwareSettings& settings);

/// The device of the Arduino on which these settings hold all coils on while the program is not connected:
/// its sketch has all pins at 0 then, and a 0 energises a coil. Empty if there is none.
std::string hotAlone(const platform::HardwareSettings& settings);
/// Whether the user must agree to that first. `allowed` is as platform::Hardware::lowAllowed.
bool mustAskForLow(const platform::HardwareSettings& settings, const std::string& allowed);

/// The card address, 0 to 3, in "k8055" (0) or "k8055:N"; empty for any other text.
std::optional<int> cardAddress(std::string_view usb);

struct Endpoint {
    std::string host;
    std::uint16_t port;
    bool operator==(const Endpoint&) const = default;
};

/// The parts of "HOST" or "HOST:PORT" (an IPv6 address stands in brackets); without a port, `usualPort` is
/// used. Empty for any other text.
std::optional<Endpoint> parseEndpoint(std::string_view text, std::uint16_t usualPort);

/// The IPv4 address and port to listen at, from "ADDRESS:PORT" or "PORT". Without an address, only this
/// computer can connect. Empty for any other text, such as "off".
std::optional<Endpoint> listenEndpoint(std::string_view text);

/// The IPv4 addresses in a text, separated by commas; blanks are allowed around an address. Empty if one of
/// them is invalid.
std::optional<std::vector<std::string>> addressList(std::string_view text);

/// Whether other computers can connect to a listener at this address.
inline bool isReachable(std::string_view address) {
    return !address.starts_with("127.");
}

/// One setting: its name in "twinstep.ini" and on the command line, its title in the window, its member, and
/// its check. The check returns the fault as words that follow the name; empty if the text is valid.
struct HardwareField {
    const char* name;
    const char* title;
    std::string platform::HardwareSettings::*value;
    std::optional<std::string> (*fault)(const std::string& text);
};

extern const std::array<HardwareField, 9> kHardwareFields;

/// The first fault of the settings, preceded by the setting's title: "Bridge: ...". Also reports settings
/// that do not go together.
std::optional<std::string> faultOf(const platform::HardwareSettings& settings);

} // namespace config
