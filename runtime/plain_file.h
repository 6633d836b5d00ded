#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace runtime {

/// What keeps a program from taking `path` for a file of its own, in words that follow its name: "is no plain
/// file" (a pipe or a device could keep the caller waiting), "is longer than ... MB". Empty when all is well,
/// and when there is no file; links are followed. `most` in bytes.
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
