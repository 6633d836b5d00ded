#pragma once

#include "platform/hardware.h"

#include <array>
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

/// The I/O address in a port setting such as "0x378": 0x100 to 0xFFF0, a multiple of 4. Empty for any other
/// text.
std::optional<std::uint16_t> ioAddress(std::string_view port);

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

/// One setting: its name in "twinstep.ini" and on the command line, its member, and its check. The check
/// returns the fault as words that follow the name; empty if the text is valid.
struct HardwareField {
    const char* name;
    std::string platform::HardwareSettings::*value;
    std::optional<std::string> (*fault)(const std::string& text);
};

extern const std::array<HardwareField, 8> kHardwareFields;

/// The first fault of the settings, preceded by the setting's name: "n1mm-listen: ...". Also reports settings
/// that do not go together.
std::optional<std::string> faultOf(const platform::HardwareSettings& settings);

} // namespace config
