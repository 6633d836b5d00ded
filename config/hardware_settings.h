#pragma once

#include "platform/hardware.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How the texts of platform::HardwareSettings are read.
namespace config {

inline constexpr const char* kAutomatic = "auto";
inline constexpr const char* kSimulated = "simulated";
inline constexpr const char* kNone = "none";
inline constexpr const char* kOff = "off";

/// The I/O address of a port text such as "0x378", 0x100 to 0xFFF0 and a multiple of 4; nothing when it is
/// none.
std::optional<std::uint16_t> ioAddress(std::string_view port);

/// The card address, 0 to 3, of "k8055" (0) or "k8055:N"; nothing when it is none.
std::optional<int> cardAddress(std::string_view usb);

struct Endpoint {
    std::string host;
    std::uint16_t port;
    bool operator==(const Endpoint&) const = default;
};

/// The parts of "HOST" or "HOST:PORT" (an IPv6 address stands in brackets); without a port, `usualPort`.
/// Nothing when it is neither.
std::optional<Endpoint> parseEndpoint(std::string_view text, std::uint16_t usualPort);

/// Where a text "ADDRESS:PORT" or "PORT" has this computer listen, with an IPv4 address; without one, for
/// this computer alone. Nothing when it is neither, as "off" is.
std::optional<Endpoint> listenEndpoint(std::string_view text);

/// The IPv4 addresses of a text, separated by commas, with blanks around them; nothing when one is none.
std::optional<std::vector<std::string>> addressList(std::string_view text);

/// Whether other computers can reach what listens at this address.
inline bool isReachable(std::string_view address) {
    return !address.starts_with("127.");
}

/// One of the settings: its name in "twinstep.ini" and on the command line, its place, and what is wrong with
/// a text for it, in words that follow the name; nothing when all is well.
struct HardwareField {
    const char* name;
    std::string platform::HardwareSettings::*value;
    std::optional<std::string> (*fault)(const std::string& text);
};

extern const std::array<HardwareField, 7> kHardwareFields;

/// The first fault of the settings, with the name before it: "n1mm-listen: ...". Also where one does not go
/// with another.
std::optional<std::string> faultOf(const platform::HardwareSettings& settings);

} // namespace config
