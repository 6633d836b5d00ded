#include "radio/n1mm.h"

#include "runtime/number.h"

#include <algorithm>
#include <charconv>

namespace radio {

namespace {

/// The text after the tag; without the tag, the text from the eighth character on.
std::string_view frequencyIn(std::string_view datagram) {
    constexpr std::string_view kTag = "<TXFreq>";
    constexpr std::size_t kUntaggedStart = 7;
    const std::size_t tag = datagram.find(kTag);
    const std::size_t start = tag == std::string_view::npos ? kUntaggedStart : tag + kTag.size();
    return datagram.substr(std::min(start, datagram.size()));
}

/// The leading digits as a number; 0 if there are none or too many for the type.
std::int64_t leadingDigits(std::string_view text) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return static_cast<std::int64_t>(number);
}

} // namespace

int n1mmPort(runtime::Int16 stored) {
    return stored == 0 ? kN1mmDefaultPort : stored.value();
}

std::string n1mmKilohertz(std::string_view datagram) {
    constexpr std::size_t kDigits = 7;
    constexpr double kTensOfHertzPerKilohertz = 100;
    const std::int64_t tensOfHertz = leadingDigits(frequencyIn(datagram).substr(0, kDigits));
    return runtime::shortestText(static_cast<double>(tensOfHertz) / kTensOfHertzPerKilohertz);
}

std::optional<std::int64_t> n1mmHertz(std::string_view datagram) {
    constexpr std::size_t kMostDigits = 12; // 9.9 THz; longer numbers are invalid
    constexpr std::int64_t kHertz = 10;
    const std::string_view text = frequencyIn(datagram);
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::int64_t tensOfHertz = digits > kMostDigits ? 0 : leadingDigits(text);
    if (tensOfHertz == 0) return std::nullopt;
    return tensOfHertz * kHertz;
}

std::optional<bool> n1mmTransmitting(std::string_view datagram) {
    constexpr std::string_view kTag = "<IsTransmitting>";
    const std::size_t tag = datagram.find(kTag);
    if (tag == std::string_view::npos) return std::nullopt;
    const std::string_view said = datagram.substr(tag + kTag.size());
    return said.starts_with("True") || said.starts_with("true");
}

} // namespace radio
