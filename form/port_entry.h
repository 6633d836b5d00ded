#pragma once

#include "runtime/checked.h"

#include <optional>
#include <string>

namespace form {

/// The highest port that a record can hold.
constexpr int kHighestPort = 32767;

/// A port typed in: digits only, from `lowest` to kHighestPort; nothing for any other text.
std::optional<runtime::Int16> portFromText(const std::string& text, int lowest);

/// What to tell a user whose entry is none.
std::string portRange(int lowest);

} // namespace form
