#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace runtime {

/// A path from UTF-8, as all texts of the program are. Not every system takes narrow characters for UTF-8.
inline std::filesystem::path pathOf(std::string_view utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

} // namespace runtime
