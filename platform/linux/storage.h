#pragma once

#include "platform/storage.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace linux_ports {

/// File storage through POSIX calls, with one thread for slow jobs.
class Storage : public platform::Storage {
  public:
    Storage();
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    /// Runs the remaining jobs first.
    ~Storage() override;

    std::optional<std::string> read(const Path& file, std::size_t limit) override;
    void create(const Path& file, std::string_view bytes) override;
    void write(const Path& file, std::size_t offset, std::string_view bytes) override;
    void sync(const Path& file) override;
    void rename(const Path& from, const Path& to) override;
    void remove(const Path& file) override;
    void later(std::function<void()> job) override;
    void finish() override;

  private:
    void runJobs();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_; // the first one may be running
    bool ending_ = false;
    std::thread thread_;
};

} // namespace linux_ports
