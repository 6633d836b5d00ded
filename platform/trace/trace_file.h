#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>

namespace trace {

/// A text file of timed lines. A separate thread writes, so that a slow disk never delays a step.
class TraceFile {
  public:
    using Clock = std::chrono::steady_clock;
    /// Called once, from the writing thread, when the file can no longer be written; recording then ends.
    using Failure = std::function<void(const std::string& reason)>;
    /// In bytes: hours of both engines at full speed. Recording ends at this length.
    static constexpr std::size_t kLongest = 900'000'000;

    /// Starts with an empty file. Times count from `start`. Throws runtime::FileError if the file cannot be
    /// opened, is no plain file or is longer than kLongest.
    TraceFile(const std::filesystem::path& path, Clock::time_point start, Failure failure);
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;
    ~TraceFile() { close(); }

    /// Adds "T text", T in whole microseconds.
    void add(std::string_view text);
    /// Writes the waiting lines; later lines are ignored.
    void close();

  private:
    void writeUntilClosed();
    bool writeOut(const std::string& lines);

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    const std::string name_;
    const Clock::time_point start_;
    const Failure failure_;
    std::unique_ptr<std::FILE, Close> file_;
    std::size_t length_ = 0; // bytes; the writing thread's

    std::mutex mutex_; // guards what follows
    std::condition_variable closing_;
    std::string pending_;
    bool closed_ = false;
    bool failed_ = false;

    std::thread writer_;
};

/// The name of the file in this folder that `trace` would overwrite, if it is a configuration or its name
/// begins with one of `names`; else empty. Finds the file through links and other spellings of the path too.
std::optional<std::string> ownFile(const std::filesystem::path& trace, const std::filesystem::path& folder,
                                   std::span<const std::string_view> names);

} // namespace trace
