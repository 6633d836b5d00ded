#pragma once

#include "platform/position_file.h"

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>

namespace linux_ports {

/// A mapped file. The system keeps its memory through the end of the program, however that comes; a thread
/// brings it to the disk twice a second, for a power failure.
class PositionFile : public platform::PositionFile {
  public:
    /// Told once, from that thread, when the disk no longer takes the file.
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
    void flushUntilEnd();

    const std::filesystem::path path_;
    const Failure failure_;
    std::span<std::byte> memory_;
    std::atomic<bool> changed_ = false;

    std::mutex mutex_; // guards ends_
    std::condition_variable ending_;
    bool ends_ = false;
    std::thread flusher_;
};

} // namespace linux_ports
