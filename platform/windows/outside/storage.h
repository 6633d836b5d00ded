#pragma once

#include "platform/storage.h"
#include "runtime/job_queue.h"

namespace windows_ports {

/// File storage, with one thread for slow jobs.
class Storage : public platform::Storage {
  public:
    std::optional<std::string> read(const Path& file, std::size_t limit) override;
    void create(const Path& file, std::string_view bytes) override;
    void write(const Path& file, std::size_t offset, std::string_view bytes) override;
    void sync(const Path& file) override;
    void rename(const Path& from, const Path& to) override;
    void remove(const Path& file) override;
    void later(std::function<void()> job) override { jobs_.later(std::move(job)); }
    void finish() override { jobs_.finish(); }

  private:
    runtime::JobQueue jobs_;
};

} // namespace windows_ports
