#pragma once

#include <filesystem>

/// Gives this process a locale with a decimal comma, whatever the machine has; what must be made for that
/// goes into the folder. Each system has its own implementation.
bool setCommaLocale(const std::filesystem::path& folder);
