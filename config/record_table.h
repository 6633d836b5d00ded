#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What the records are to the user, and what they may hold.
namespace config {

/// What a record holds, in the words of the window.
std::string recordName(int number);

/// What shows that these bytes are no configuration, in words that follow "is no configuration: "; nothing
/// when they may be one. Up to two records out of their range count as damage alone.
std::optional<std::string> configurationFault(const std::string& bytes);

} // namespace config
