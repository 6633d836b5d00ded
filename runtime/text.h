#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace runtime {

/// Texts are UTF-8; lengths and positions count characters (code points), never bytes.
std::size_t characterCount(std::string_view text);
std::string firstCharacters(std::string_view text, std::size_t count);
std::string lastCharacters(std::string_view text, std::size_t count);

/// The format "000.00" (integerDigits = 3) or "0.00" (integerDigits = 1): at least `integerDigits` integer
/// digits, exactly two decimals, always a point. Rounds the shortest decimal text of the value half away from
/// zero, so 0.125 gives "000.13". A value that rounds to zero has no sign.
std::string formatFixed(float value, int integerDigits);

inline std::string formatStored(float value) {
    return formatFixed(value, 3);
}
inline std::string formatShown(float value) {
    return formatFixed(value, 1);
}

/// A character format: each '@' takes one character of `text`, from the right; a blank if no character is
/// left. All else in `pattern` is literal. Extra characters of `text` come before the pattern.
std::string formatCharacters(std::string_view text, std::string_view pattern);

/// The hexadecimal value behind a prefix: "&HFF00", the form in which colours are stored; with "0x" that of
/// addresses.
std::string hexText(unsigned value, std::string_view prefix = "&H");

/// To and from Windows-1252, the ANSI code page of the record file and of datagrams. A character outside it
/// becomes '?'; an undefined byte becomes the control character of the same number.
std::string toAnsi(std::string_view utf8);
std::string fromAnsi(std::string_view bytes);

} // namespace runtime
