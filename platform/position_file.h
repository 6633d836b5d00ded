#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace platform {

/// A small file whose memory outlives the program: a kill leaves in it what was stored last.
class PositionFile {
  public:
    virtual ~PositionFile() = default;
    /// What a program left that did not end in order; nothing when there is no file. Throws
    /// runtime::FileError when there is one that cannot be read or is no plain file.
    virtual std::optional<std::string> leftOver() = 0;
    /// Puts a new file with these bytes in place of any other, and returns its memory, which stays until the
    /// file is removed. Throws runtime::FileError; an older file is then as it was.
    virtual std::span<std::byte> create(std::span<const std::byte> bytes) = 0;
    /// The memory has changed: within a second the disk holds it too. Makes no system call.
    virtual void changed() = 0;
    /// Takes the file away: the program ends in order.
    virtual void remove() = 0;
};

} // namespace platform
