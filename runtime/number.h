#pragma once

#include "runtime/checked.h"

#include <string>
#include <string_view>

namespace runtime {

/// The nearest 16-bit integer, halves to even. OverflowError outside -32768 to 32767 and for NaN.
Int16 roundToInt16(double value);

/// The single nearest to `value`. OverflowError if `value` is finite but too large for a single.
float toSingle(double value);

/// The quotient rounded to a single. DivisionByZero when `divisor` is 0.
float divideSingle(float dividend, float divisor);

/// Reads a whole text as a decimal number: blanks around it, one sign, digits, one decimal sign (a point or
/// a comma), an exponent. Independent of the locale. TypeMismatch for anything else.
double parseNumber(std::string_view text);

/// parseNumber, rounded: what an integer or a single field takes from a text box.
Int16 parseInt16(std::string_view text);
float parseSingle(std::string_view text);

/// Reads the number at the beginning of a text: leading blanks, one sign, digits and one decimal point; the
/// rest is ignored. 0 if there is no number. "&H" begins a hexadecimal number.
double leadingNumber(std::string_view text);

/// The shortest decimal text that reads back as the same value, never with an exponent: "14.025", "7",
/// "-0.5".
std::string shortestText(float value);
std::string shortestText(double value);

} // namespace runtime
