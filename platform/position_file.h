#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace platform {

/// A small memory-mapped file: after a crash or a kill it contains what was stored last.
class PositionFile {
  public:
    virtual ~PositionFile() = default;
    /// The content left by a program that did not end in order; empty if there is no file. Throws
    /// runtime::FileError if the file is unreadable or not a plain file.
    virtual std::optional<std::string> leftOver() = 0;
    /// Creates a file with these bytes, replacing an old file, and returns its memory, which is valid until
    /// remove(). Throws runtime::FileError; then an old file is unchanged.
    virtual std::span<std::byte> create(std::span<const std::byte> bytes) = 0;
    /// Call after changing the memory: the change is on the disk within a second. Makes no system call.
    virtual void changed() = 0;
    /// Removes the file at an orderly end.
    virtual void remove() = 0;
};

} // namespace platform
