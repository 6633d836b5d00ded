#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The records' names for the user, and their allowed values.
namespace config {

/// The name of a record's value, in the words of the window.
std::string recordName(int number);

/// Why these bytes are no configuration, as words that follow "is no configuration: "; empty if they may be a
/// configuration. Up to two records out of range count only as damage.
std::optional<std::string> configurationFault(const std::string& bytes);

} // namespace config
