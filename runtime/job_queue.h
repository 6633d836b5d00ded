#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace runtime {

/// Runs jobs one after the other on a thread of its own. A job must not throw.
class JobQueue {
  public:
    JobQueue() : thread_([this] { run(); }) {}
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;
    /// Runs the remaining jobs first.
    ~JobQueue() {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    void later(std::function<void()> job) {
        {
            const std::lock_guard lock(mutex_);
            jobs_.push_back(std::move(job));
        }
        changed_.notify_all();
    }

    /// Waits until all jobs have run.
    void finish() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return jobs_.empty(); });
    }

  private:
    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
            if (jobs_.empty()) return;
            const std::function<void()> job = jobs_.front();
            lock.unlock();
            job();
            lock.lock();
            jobs_.pop_front();
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_; // the first one may be running
    bool ending_ = false;
    std::thread thread_; // last: it uses all of the above
};

} // namespace runtime
