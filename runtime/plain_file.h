#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace runtime {

/// Why the program must not use `path` as its own file, as words that follow the name: "is no plain file"
/// (reading a pipe or a device could block the caller), "is longer than ... MB". Empty if the file is usable
/// or does not exist. Links are followed. `most` is in bytes.
inline std::string faultOfFile(const std::filesystem::path& path, std::uintmax_t most) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) return {};
    if (!std::filesystem::is_regular_file(status)) return "is no plain file";
    if (std::filesystem::file_size(path, error) > most && !error)
        return "is longer than " + std::to_string(most / 1'000'000) + " MB";
    return {};
}

} // namespace runtime
