#include "runtime/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace runtime {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view trimmedLeft(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

std::string_view trimmed(std::string_view text) {
    text = trimmedLeft(text);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

template <class T>
std::string shortest(T value) {
    // The longest is a denormal double: "-0." and 1074 digits.
    std::array<char, 1100> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    return {digits.data(), end};
}

} // namespace

Int16 roundToInt16(double value) {
    // std::nearbyint rounds halves to even in the default rounding mode, which nothing here changes.
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -32768.0 && rounded <= 32767.0)) throw OverflowError();
    return static_cast<std::int64_t>(rounded);
}

float toSingle(double value) {
    const auto single = static_cast<float>(value);
    if (std::isinf(single) && std::isfinite(value)) throw OverflowError();
    return single;
}

float divideSingle(float dividend, float divisor) {
    if (divisor == 0.0F) throw DivisionByZero();
    return toSingle(static_cast<double>(dividend) / divisor);
}

double parseNumber(std::string_view text) {
    std::string digits(trimmed(text));
    std::replace(digits.begin(), digits.end(), ',', '.');
    std::string_view body = digits;
    const bool negative = body.starts_with('-');
    if (negative || body.starts_with('+')) body.remove_prefix(1);
    // from_chars also accepts "inf" and "nan"; they are refused here. A number begins with a digit or the
    // point.
    if (body.empty() || !(isDigit(body.front()) || body.front() == '.')) throw TypeMismatch();
    double value = 0;
    const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), value);
    if (error == std::errc::invalid_argument || end != body.data() + body.size()) throw TypeMismatch();
    if (error == std::errc::result_out_of_range) throw OverflowError();
    return negative ? -value : value;
}

Int16 parseInt16(std::string_view text) {
    return roundToInt16(parseNumber(text));
}

float parseSingle(std::string_view text) {
    return toSingle(parseNumber(text));
}

double leadingNumber(std::string_view text) {
    text = trimmedLeft(text);
    if (text.starts_with("&H") || text.starts_with("&h")) {
        std::uint32_t bits = 0;
        std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16);
        return bits;
    }
    if (text.starts_with('+')) text.remove_prefix(1);
    std::size_t length = text.starts_with('-') ? 1 : 0;
    bool pointSeen = false;
    while (length < text.size() && (isDigit(text[length]) || (text[length] == '.' && !pointSeen))) {
        pointSeen = pointSeen || text[length] == '.';
        ++length;
    }
    double value = 0;
    std::from_chars(text.data(), text.data() + length, value, std::chars_format::fixed);
    return value;
}

std::string shortestText(float value) {
    return shortest(value);
}

std::string shortestText(double value) {
    return shortest(value);
}

} // namespace runtime
