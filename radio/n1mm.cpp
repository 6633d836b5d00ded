#include "radio/n1mm.h"

#include "runtime/number.h"

#include <algorithm>
#include <charconv>

namespace radio {

int n1mmPort(runtime::Int16 stored) {
    return stored == 0 ? kN1mmDefaultPort : stored.value();
}

std::string n1mmKilohertz(std::string_view datagram) {
    constexpr std::string_view kTag = "<TXFreq>";
    constexpr std::size_t kDigits = 7;
    constexpr std::size_t kUntaggedStart = 7; // the eighth character
    constexpr double kTensOfHertzPerKilohertz = 100;

    const std::size_t tag = datagram.find(kTag);
    const std::size_t start = tag == std::string_view::npos ? kUntaggedStart : tag + kTag.size();
    const std::string_view digits = datagram.substr(std::min(start, datagram.size()), kDigits);
    unsigned tensOfHertz = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), tensOfHertz);
    return runtime::shortestText(tensOfHertz / kTensOfHertzPerKilohertz);
}

} // namespace radio
