#include "platform/windows/log_writer.h"

#include "platform/windows/console.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace windows_ports {

namespace {

constexpr std::size_t kMostWaiting = 64 * 1024; // bytes

} // namespace

/// Outlives the writer where its thread hangs in the console.
struct LogWriter::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::string waiting;
    bool writing = false;
    bool over = false;

    void run() {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [this] { return over || !waiting.empty(); });
            if (waiting.empty()) return;
            const std::string text = std::exchange(waiting, {});
            writing = true;
            lock.unlock();
            writeOutput(text);
            lock.lock();
            writing = false;
            changed.notify_all();
        }
    }
};

LogWriter::LogWriter() : queue_(std::make_shared<Queue>()) {
    std::thread([queue = queue_] { queue->run(); }).detach();
}

LogWriter::~LogWriter() {
    std::unique_lock lock(queue_->mutex);
    queue_->over = true;
    queue_->changed.notify_all();
    queue_->changed.wait_for(lock, std::chrono::seconds(1),
                             [this] { return queue_->waiting.empty() && !queue_->writing; });
}

void LogWriter::write(std::string line) {
    const std::lock_guard lock(queue_->mutex);
    if (queue_->waiting.size() + line.size() >= kMostWaiting) return;
    queue_->waiting += std::move(line) + "\n";
    queue_->changed.notify_all();
}

} // namespace windows_ports
