#include "config/hardware_settings.h"

#include "bridge/protocol.h"

#include <algorithm>
#include <charconv>
#include <span>

namespace config {

namespace {

using platform::HardwareSettings;

constexpr std::uint16_t kLowestIoAddress = 0x100; // below are the board's own devices
constexpr std::uint16_t kHighestIoAddress = 0xFFF0;
constexpr int kRegisters = 4; // a port's registers begin at a multiple of this
constexpr int kHighestCard = 3;
constexpr std::size_t kLongestHost = 253; // RFC 1035

/// Reads the whole text as a number without a sign.
template <class Number>
std::optional<Number> number(std::string_view text, int base = 10) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

constexpr std::string_view kSerialBoard = "firmata:", kGpio = "gpio:";
constexpr int kFirstPin = 2, kLastPin = 127, kLastLine = 1023;
constexpr int kUsualBaud = 57600, kLowestBaud = 9600, kHighestBaud = 1'000'000;

/// Eight different numbers from `lowest` to `highest`, with commas between.
std::optional<std::array<int, kOutputs>> outputNumbers(std::string_view text, int lowest, int highest) {
    std::array<int, kOutputs> numbers{};
    for (std::size_t output = 0; output < kOutputs; ++output) {
        const auto comma = output + 1 < kOutputs ? text.find(',') : text.size();
        if (comma == std::string_view::npos) return std::nullopt;
        const auto value = number<unsigned>(text.substr(0, comma));
        if (!value || *value < static_cast<unsigned>(lowest) || *value > static_cast<unsigned>(highest))
            return std::nullopt;
        const auto before = std::span(numbers).first(output);
        if (std::ranges::find(before, static_cast<int>(*value)) != before.end()) return std::nullopt;
        numbers.at(output) = static_cast<int>(*value);
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return numbers;
}

/// Cuts what follows the last colon off, if it has only these characters.
std::optional<std::string_view> cutTail(std::string_view& text, std::string_view characters) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const std::string_view tail = text.substr(colon + 1);
    if (tail.find_first_not_of(characters) != std::string_view::npos) return std::nullopt;
    text = text.substr(0, colon);
    return tail;
}

bool isHost(std::string_view text) {
    const auto belongs = [](unsigned char letter) { return letter > ' ' && letter != 0x7F; };
    return !text.empty() && text.size() <= kLongestHost && std::ranges::all_of(text, belongs);
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::optional<std::string> faultOfPort(const std::string& text) {
    if (text == kAutomatic || text == kSimulated || text.starts_with('/') || ioAddress(text) ||
        serialBoard(text) || gpioLines(text))
        return std::nullopt;
    if (text.starts_with(kSerialBoard)) {
        return quoted(text) +
               " is not firmata:DEVICE or firmata:DEVICE:PINS, such as firmata:/dev/ttyACM0:" + kUsualPins +
               " (eight different pins from 2 to 127)";
    }
    if (text.starts_with(kGpio)) {
        return quoted(text) + " is not gpio:CHIP or gpio:CHIP:LINES, such as gpio:gpiochip0:" + kUsualLines +
               " (eight different lines)";
    }
    return quoted(text) + " is neither \"auto\" nor \"simulated\" nor a device such as /dev/parport0 nor an "
                          "I/O address such "
                          "as 0x378 (0x100 to 0xFFF0, a multiple of 4) nor firmata:DEVICE nor gpio:CHIP";
}

std::optional<std::string> faultOfCoilsOn(const std::string& text) {
    if (text == kAutomatic || text == kLow || text == kHigh) return std::nullopt;
    return quoted(text) + " is neither \"low\" nor \"high\" nor \"auto\"";
}

std::optional<std::string> faultOfUsb(const std::string& text) {
    if (text == kNone || text == kSimulated || cardAddress(text)) return std::nullopt;
    return quoted(text) +
           " is neither \"none\" nor \"simulated\" nor \"k8055\" or \"k8055:0\" to \"k8055:3\"";
}

std::optional<std::string> faultOfListenAddress(const std::string& text) {
    if (bridge::isAddress(text)) return std::nullopt;
    return quoted(text) + " is no IPv4 address such as 192.168.1.20";
}

std::optional<std::string> faultOfHost(const std::string& text) {
    if (isHost(text)) return std::nullopt;
    return quoted(text) + " is no host name or address";
}

std::optional<std::string> faultOfEndpoint(const std::string& text) {
    if (parseEndpoint(text, bridge::kPort)) return std::nullopt;
    return quoted(text) + " is not HOST or HOST:PORT, with a port from 1 to 65535";
}

std::optional<std::string> faultOfRotctld(const std::string& text) {
    if (text == kOff || listenEndpoint(text)) return std::nullopt;
    return quoted(text) +
           " is neither \"off\" nor PORT or ADDRESS:PORT, with an IPv4 address and a port from "
           "1 to 65535";
}

std::optional<std::string> faultOfAllowed(const std::string& text) {
    if (addressList(text)) return std::nullopt;
    return quoted(text) + " is no list of IPv4 addresses such as 192.168.1.20,192.168.1.21";
}

} // namespace

const std::array<HardwareField, 9> kHardwareFields = {{
    {"port", "Outputs", &HardwareSettings::port, faultOfPort},
    {"coils-on", "Coils on at", &HardwareSettings::coilsOn, faultOfCoilsOn},
    {"usb", "USB board", &HardwareSettings::usb, faultOfUsb},
    {"n1mm-listen", "N1MM Logger, listen at", &HardwareSettings::n1mmListen, faultOfListenAddress},
    {"tracking-server", "Tracking server", &HardwareSettings::trackingServer, faultOfHost},
    {"bridge", "Bridge", &HardwareSettings::bridge, faultOfEndpoint},
    {"rigctld", "rigctld", &HardwareSettings::rigctld, faultOfEndpoint},
    {"rotctld", "rotctld, listen at", &HardwareSettings::rotctld, faultOfRotctld},
    {"rotctld-allow", "rotctld, allowed", &HardwareSettings::rotctldAllow, faultOfAllowed},
}};

std::optional<std::uint16_t> ioAddress(std::string_view port) {
    if (!port.starts_with("0x") && !port.starts_with("0X")) return std::nullopt;
    const auto address = number<std::uint16_t>(port.substr(2), 16);
    if (!address || *address < kLowestIoAddress || *address > kHighestIoAddress || *address % kRegisters != 0)
        return std::nullopt;
    return address;
}

std::optional<SerialBoard> serialBoard(std::string_view port) {
    if (!port.starts_with(kSerialBoard)) return std::nullopt;
    port.remove_prefix(kSerialBoard.size());
    const auto baudText = cutTail(port, "0123456789");
    const auto baud = baudText ? number<int>(*baudText) : kUsualBaud;
    const auto pins = outputNumbers(cutTail(port, "0123456789,").value_or(kUsualPins), kFirstPin, kLastPin);
    if (port.empty() || !pins || !baud || *baud < kLowestBaud || *baud > kHighestBaud) return std::nullopt;
    return SerialBoard{std::string(port), *pins, *baud};
}

std::optional<GpioLines> gpioLines(std::string_view port) {
    if (!port.starts_with(kGpio)) return std::nullopt;
    port.remove_prefix(kGpio.size());
    const auto lines = outputNumbers(cutTail(port, "0123456789,").value_or(kUsualLines), 0, kLastLine);
    if (port.empty() || port.find_first_of("/:") != std::string_view::npos || !lines) return std::nullopt;
    return GpioLines{std::string(port), *lines};
}

bool coilsOnHigh(const HardwareSettings& settings) {
    if (settings.coilsOn != kAutomatic) return settings.coilsOn == kHigh;
    return settings.port.starts_with(kSerialBoard) || settings.port.starts_with(kGpio);
}

std::string hotAlone(const HardwareSettings& settings) {
    const auto board = serialBoard(settings.port);
    return board && !coilsOnHigh(settings) ? board->device : std::string();
}

bool mustAskForLow(const HardwareSettings& settings, const std::string& allowed) {
    const std::string device = hotAlone(settings);
    return !device.empty() && device != allowed;
}

std::optional<int> cardAddress(std::string_view usb) {
    constexpr std::string_view kBoard = "k8055";
    if (usb == kBoard) return 0;
    if (!usb.starts_with(kBoard) || usb.substr(kBoard.size(), 1) != ":") return std::nullopt;
    const auto card = number<unsigned>(usb.substr(kBoard.size() + 1));
    if (!card || *card > kHighestCard) return std::nullopt;
    return static_cast<int>(*card);
}

std::optional<Endpoint> parseEndpoint(std::string_view text, std::uint16_t usualPort) {
    std::string_view host = text;
    std::string_view rest;
    if (text.starts_with('[')) {
        const auto end = text.find(']');
        if (end == std::string_view::npos) return std::nullopt;
        host = text.substr(1, end - 1);
        rest = text.substr(end + 1);
    } else if (const auto colon = text.find(':'); colon != std::string_view::npos) {
        host = text.substr(0, colon);
        rest = text.substr(colon);
    }
    if (!isHost(host)) return std::nullopt;
    if (rest.empty()) return Endpoint{std::string(host), usualPort};
    const auto port = number<std::uint16_t>(rest.substr(1));
    if (!rest.starts_with(':') || !port || *port == 0) return std::nullopt;
    return Endpoint{std::string(host), *port};
}

std::optional<Endpoint> listenEndpoint(std::string_view text) {
    const std::string place =
        text.find(':') == std::string_view::npos ? "127.0.0.1:" + std::string(text) : std::string(text);
    // A missing port gives 0.
    auto endpoint = parseEndpoint(place, 0);
    if (!endpoint || endpoint->port == 0 || !bridge::isAddress(endpoint->host)) return std::nullopt;
    return endpoint;
}

std::optional<std::vector<std::string>> addressList(std::string_view text) {
    std::vector<std::string> addresses;
    const auto trimmed = [](std::string_view word) {
        word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
        return word.substr(0, word.find_last_not_of(' ') + 1);
    };
    if (trimmed(text).empty()) return addresses;
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find(',', begin), text.size());
        const std::string_view address = trimmed(text.substr(begin, end - begin));
        if (!bridge::isAddress(address)) return std::nullopt;
        addresses.emplace_back(address);
        begin = end + 1;
    }
    return addresses;
}

std::optional<std::string> faultOf(const HardwareSettings& settings) {
    for (const HardwareField& field : kHardwareFields) {
        if (const auto fault = field.fault(settings.*field.value))
            return std::string(field.title) + ": " + *fault;
    }
    const auto rotctld = listenEndpoint(settings.rotctld);
    if (rotctld && isReachable(rotctld->host) && addressList(settings.rotctldAllow)->empty()) {
        return "rotctld, listen at: other computers can reach " + settings.rotctld +
               "; enter those that may turn the antenna as \"rotctld, allowed\" (--rotctld-allow)";
    }
    return std::nullopt;
}

} // namespace config
