#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The few calls by which files are kept. A call that fails throws runtime::FileError, whose text names the
/// file and the reason. All but sync and finish return at once: sync takes seconds on a slow card.
class Storage {
  public:
    using Path = std::filesystem::path;
    virtual ~Storage() = default;

    /// The whole of a file, or nothing where there is none. An error too: what is no plain file, and more
    /// than `limit` bytes.
    virtual std::optional<std::string> read(const Path& file, std::size_t limit) = 0;
    /// Makes a new file, and never writes through a link. An error where the name is taken; no file is left
    /// then, and none where it could not be written whole.
    virtual void create(const Path& file, std::string_view bytes) = 0;
    /// Writes into a file that exists, from byte `offset` on.
    virtual void write(const Path& file, std::size_t offset, std::string_view bytes) = 0;
    /// Returns when the file, its name and all earlier changes of names in its folder would survive a power
    /// failure.
    virtual void sync(const Path& file) = 0;
    /// Takes the place of a file of the new name, in one step.
    virtual void rename(const Path& from, const Path& to) = 0;
    /// No error where there is no such file.
    virtual void remove(const Path& file) = 0;

    /// Runs the job soon, one after the other, on a thread of their own. A job throws nothing.
    virtual void later(std::function<void()> job) = 0;
    /// Returns when all jobs have run.
    virtual void finish() = 0;
};

} // namespace platform
