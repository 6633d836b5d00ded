#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// File access. A call that fails throws runtime::FileError with the file and the reason. All calls but sync
/// and finish return at once: sync takes seconds on a slow memory card.
class Storage {
  public:
    using Path = std::filesystem::path;
    virtual ~Storage() = default;

    /// The whole content of a file; empty if there is no file. Throws if it is no plain file or longer than
    /// `limit` bytes.
    virtual std::optional<std::string> read(const Path& file, std::size_t limit) = 0;
    /// Creates a new file; never writes through a link. Throws if the name is taken. If writing fails, the
    /// incomplete file is removed.
    virtual void create(const Path& file, std::string_view bytes) = 0;
    /// Writes into an existing file, from byte `offset` on.
    virtual void write(const Path& file, std::size_t offset, std::string_view bytes) = 0;
    /// Returns when the file, its name and all earlier renames in its folder are safe against a power
    /// failure.
    virtual void sync(const Path& file) = 0;
    /// Replaces a file with the new name, in one step.
    virtual void rename(const Path& from, const Path& to) = 0;
    /// No error if there is no such file.
    virtual void remove(const Path& file) = 0;

    /// Runs the jobs soon, one after the other, on a separate thread. A job must not throw.
    virtual void later(std::function<void()> job) = 0;
    /// Waits until all jobs have run.
    virtual void finish() = 0;
};

} // namespace platform
