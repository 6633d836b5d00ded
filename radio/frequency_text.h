#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace radio {

/// The key of a frequency in megahertz: its first two characters, right-aligned.
std::string keyOfMegahertz(std::string_view text);

/// The key of a frequency in kilohertz. Below 10 MHz it is the digit and a point: "7025.5" gives "7.".
std::string keyOfKilohertz(std::string_view text);

/// The hertz of a frequency in megahertz: "14.0255", "14,0255", "14.025.500" and " 7.050.000" alike. Digits
/// below a hertz are cut off. Empty for 0 and for any other text.
std::optional<std::int64_t> hertzOfMegahertz(std::string_view text);

} // namespace radio
