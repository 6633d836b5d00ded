#include "runtime/text.h"

#include "runtime/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace runtime {

namespace {

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The byte offset at which character `index` begins.
std::size_t offsetOf(std::string_view text, std::size_t index) {
    std::size_t offset = 0;
    for (; offset < text.size(); ++offset) {
        if (!isContinuation(text[offset]) && index-- == 0) break;
    }
    return offset;
}

/// Code points of the bytes 0x80 to 0x9F in Windows-1252; elsewhere it equals Latin-1. Source: the Unicode
/// Consortium's mapping table CP1252.TXT; the five undefined bytes map to themselves.
constexpr std::array<std::uint16_t, 32> kAnsiUpper = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char ansiByte(std::uint32_t codePoint) {
    if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) return static_cast<char>(codePoint);
    const auto* found = std::find(kAnsiUpper.begin(), kAnsiUpper.end(), codePoint);
    return found == kAnsiUpper.end() ? '?' : static_cast<char>(0x80 + (found - kAnsiUpper.begin()));
}

/// Reads the code point at the front of `text` and removes it; a malformed byte reads as U+FFFD.
std::uint32_t takeCodePoint(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80) return lead;
    const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
    if (extra == 0) return 0xFFFD;
    std::uint32_t codePoint = lead & (0x3FU >> static_cast<unsigned>(extra));
    for (int i = 0; i < extra; ++i) {
        if (text.empty() || !isContinuation(text.front())) return 0xFFFD;
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(text.front()) & 0x3FU);
        text.remove_prefix(1);
    }
    return codePoint;
}

void appendUtf8(std::string& out, std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0U | (codePoint >> 6U));
        out += static_cast<char>(0x80U | (codePoint & 0x3FU));
    } else {
        out += static_cast<char>(0xE0U | (codePoint >> 12U));
        out += static_cast<char>(0x80U | ((codePoint >> 6U) & 0x3FU));
        out += static_cast<char>(0x80U | (codePoint & 0x3FU));
    }
}

/// Adds one to the last digit of a text of digits and at most one point.
void incrementDecimal(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit == '.') continue;
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
}

constexpr int kDecimals = 2;

std::string withSign(bool negative, std::string digits) {
    const bool isZero = digits.find_first_not_of("0.") == std::string::npos;
    if (negative && !isZero) digits.insert(digits.begin(), '-');
    return digits;
}

/// The rounded hundredths of a magnitude, or nothing near a half. Near a half the shortest decimal text,
/// which differs by less than one unit in the last place, could round the other way.
std::optional<long> certainHundredths(float magnitude) {
    const double hundredths = double{magnitude} * 100;
    const double doubt = hundredths * double{std::numeric_limits<float>::epsilon()} + 1e-9;
    if (!(doubt < 0.5)) return {};
    const double whole = std::floor(hundredths);
    const double rest = hundredths - whole;
    if (std::fabs(rest - 0.5) <= doubt) return {};
    return static_cast<long>(whole) + (rest > 0.5 ? 1 : 0);
}

/// Hundredths as a text with at least this many integer digits.
std::string hundredthsText(long hundredths, int integerDigits) {
    std::array<char, 24> digits;
    char* const end = digits.end();
    char* first = end;
    const auto put = [&](char c) { *--first = c; };
    for (int i = 0; i < kDecimals; ++i, hundredths /= 10)
        put(static_cast<char>('0' + hundredths % 10));
    put('.');
    for (int i = 0; i < integerDigits || hundredths > 0; ++i, hundredths /= 10) {
        put(static_cast<char>('0' + hundredths % 10));
    }
    return {first, end};
}

} // namespace

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); }));
}

std::string firstCharacters(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, offsetOf(text, count)));
}

std::string lastCharacters(std::string_view text, std::size_t count) {
    const std::size_t total = characterCount(text);
    return std::string(text.substr(count < total ? offsetOf(text, total - count) : 0));
}

std::string formatFixed(float value, int integerDigits) {
    const bool negative = std::signbit(value);
    // The fast way for nearly every value: a position is shown at each step.
    if (const auto hundredths = certainHundredths(std::fabs(value))) {
        return withSign(negative, hundredthsText(*hundredths, integerDigits));
    }
    std::string digits = shortestText(std::fabs(value));
    if (digits.find('.') == std::string::npos) digits += '.';
    digits.append(kDecimals + 1, '0');
    const std::size_t firstDropped = digits.find('.') + kDecimals + 1;
    const bool roundUp = digits[firstDropped] >= '5';
    digits.resize(firstDropped);
    if (roundUp) incrementDecimal(digits);
    const auto wanted = static_cast<std::size_t>(integerDigits) + 1 + kDecimals;
    if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), '0');
    return withSign(negative, digits);
}

std::string formatCharacters(std::string_view text, std::string_view pattern) {
    std::string out(pattern);
    for (auto place = out.rbegin(); place != out.rend(); ++place) {
        if (*place != '@') continue;
        *place = text.empty() ? ' ' : text.back();
        if (!text.empty()) text.remove_suffix(1);
    }
    return std::string(text) + out;
}

std::string hexText(unsigned value, std::string_view prefix) {
    std::array<char, 8> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value, 16).ptr;
    std::transform(digits.begin(), end, digits.begin(),
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    return std::string(prefix) + std::string(digits.data(), end);
}

std::string toAnsi(std::string_view utf8) {
    std::string out;
    while (!utf8.empty())
        out += ansiByte(takeCodePoint(utf8));
    return out;
}

std::string fromAnsi(std::string_view bytes) {
    std::string out;
    while (!bytes.empty()) {
        // Appends runs of plain characters at once: a tracking server may send long lines.
        const auto plainEnd = std::find_if(
            bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
        out.append(bytes.begin(), plainEnd);
        bytes.remove_prefix(static_cast<std::size_t>(plainEnd - bytes.begin()));
        if (bytes.empty()) break;
        const auto code = static_cast<unsigned char>(bytes.front());
        appendUtf8(out, code < 0xA0 ? kAnsiUpper[code - 0x80U] : code);
        bytes.remove_prefix(1);
    }
    return out;
}

} // namespace runtime
