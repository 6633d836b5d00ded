#pragma once

#include "platform/position_file.h"
#include "runtime/flusher.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <sys/stat.h>

namespace linux_ports {

/// A memory-mapped file. The system keeps its memory after the program's end, even after a crash; a thread
/// flushes it to the disk twice a second, in case of a power failure.
class PositionFile : public platform::PositionFile {
  public:
    /// Called once, from that thread, when the file cannot be flushed any more, or is no longer in its
    /// place.
    using Failure = std::function<void(const std::string& reason)>;

    PositionFile(std::filesystem::path path, Failure failure);
    PositionFile(const PositionFile&) = delete;
    PositionFile& operator=(const PositionFile&) = delete;
    ~PositionFile() override;

    std::optional<std::string> leftOver() override;
    std::span<std::byte> create(std::span<const std::byte> bytes) override;
    void changed() override { changed_.store(true, std::memory_order_release); }
    void remove() override;

  private:
    std::string named() const;
    void unmap();
    bool inPlace() const;
    bool flush();

    const std::filesystem::path path_;
    const Failure failure_;
    std::span<std::byte> memory_;
    struct stat mapped_ {}; // whose file it is
    std::atomic<bool> changed_ = false;
    runtime::Flusher flusher_; // last: it uses all of the above
};

} // namespace linux_ports
