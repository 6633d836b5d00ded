#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace runtime {

/// Brings something to the disk twice a second, on a thread of its own.
class Flusher {
  public:
    Flusher() = default;
    Flusher(const Flusher&) = delete;
    Flusher& operator=(const Flusher&) = delete;
    ~Flusher() { end(); }

    /// Calls `flush` from now on, until it returns false. It must not throw. Precondition: not begun, or
    /// ended.
    void begin(std::function<bool()> flush) {
        ends_ = false;
        thread_ = std::thread([this, flush = std::move(flush)] { run(flush); });
    }

    /// Flushes once more.
    void end() {
        if (!thread_.joinable()) return;
        {
            const std::lock_guard lock(mutex_);
            ends_ = true;
        }
        ending_.notify_one();
        thread_.join();
    }

  private:
    static constexpr auto kBetweenFlushes = std::chrono::milliseconds(500);

    void run(const std::function<bool()>& flush) {
        for (bool last = false; !last;) {
            {
                std::unique_lock lock(mutex_);
                last = ending_.wait_for(lock, kBetweenFlushes, [this] { return ends_; });
            }
            if (!flush()) return;
        }
    }

    std::mutex mutex_; // guards ends_
    std::condition_variable ending_;
    bool ends_ = false;
    std::thread thread_;
};

} // namespace runtime
