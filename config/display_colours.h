#pragma once

#include "form/form1.h"

#include <string>

namespace config {

form::Colour displayColour(const form::Form1& form);
form::Colour displayBackground(const form::Form1& form);

/// The position and unit labels take the colour, the display shapes the background.
void applyDisplayColour(form::Form1& form, form::Colour colour);
void applyDisplayBackground(form::Form1& form, form::Colour colour);

/// Reads a stored colour ("&H" and hexadecimal digits, or decimal digits); `fallback` if the text is invalid.
form::Colour colourFromText(const std::string& text, form::Colour fallback);

} // namespace config
