#pragma once

#include "runtime/checked.h"

#include <optional>
#include <string>

namespace form {

/// The highest port that a record can hold.
constexpr int kHighestPort = 32767;

/// Reads a typed port: digits only, from `lowest` to kHighestPort; empty for any other text.
std::optional<runtime::Int16> portFromText(const std::string& text, int lowest);

/// The message for an invalid port.
std::string portRange(int lowest);

} // namespace form
