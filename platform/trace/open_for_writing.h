#pragma once

#include <cstdio>
#include <filesystem>

namespace trace {

/// Opens a file that programs started by this one do not inherit, and empties it. Null, with the reason in
/// errno, if it cannot be opened. Each system has its own implementation.
std::FILE* openForWriting(const std::filesystem::path& path);

} // namespace trace
