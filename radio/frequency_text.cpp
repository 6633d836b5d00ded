#include "radio/frequency_text.h"

#include "form/frequency_source.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <charconv>

namespace radio {

std::string keyOfMegahertz(std::string_view text) {
    return runtime::formatCharacters(runtime::firstCharacters(text, form::kKeyCharacters), "@@");
}

std::string keyOfKilohertz(std::string_view text) {
    constexpr double kKilohertzPerMegahertz = 1000;
    const double megahertz = runtime::leadingNumber(text) / kKilohertzPerMegahertz;
    const std::string key = keyOfMegahertz(runtime::shortestText(megahertz));
    const std::string digits = runtime::shortestText(runtime::leadingNumber(key));
    return digits.size() == 1 ? digits + "." : key;
}

std::optional<std::int64_t> hertzOfMegahertz(std::string_view text) {
    constexpr std::size_t kDigitsBelowMegahertz = 6;
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    std::string digits;
    std::size_t below = 0;
    bool pointSeen = false;
    for (const char c : text) {
        if (c == '.' || c == ',') {
            pointSeen = true;
        } else if (c < '0' || c > '9') {
            return std::nullopt;
        } else if (below < kDigitsBelowMegahertz) {
            digits += c;
            if (pointSeen) ++below;
        }
    }
    digits.append(kDigitsBelowMegahertz - below, '0');
    std::int64_t hertz = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), hertz);
    if (error != std::errc() || hertz == 0) return std::nullopt;
    return hertz;
}

} // namespace radio
