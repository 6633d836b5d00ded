#include "platform/trace/trace_file.h"

#include "runtime/errors.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <system_error>

namespace trace {

namespace {

constexpr auto kBetweenWrites = std::chrono::milliseconds(50);
/// Lines that a disk which hangs may pile up, in bytes: over a minute of both engines at full speed.
constexpr std::size_t kMostPending = 16U << 20;

std::string reason(int error) {
    return std::generic_category().message(error);
}

} // namespace

TraceFile::TraceFile(const std::filesystem::path& path, Clock::time_point start, Failure failure)
    : name_(path.string()), start_(start), failure_(std::move(failure)),
      file_(std::fopen(path.c_str(), "we")) { // e: not inherited by programs that this one starts
    if (!file_) throw runtime::FileError("cannot open trace file \"" + name_ + "\": " + reason(errno));
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    writer_ = std::thread([this] { writeUntilClosed(); });
}

void TraceFile::close() {
    if (!writer_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    closing_.notify_one();
    writer_.join();
}

void TraceFile::add(std::string_view text) {
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start_).count();
    std::array<char, 24> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), time).ptr;

    const std::lock_guard lock(mutex_);
    if (closed_ || failed_ || pending_.size() > kMostPending) return;
    pending_.append(std::string_view(digits.data(), end)).append(1, ' ').append(text).append(1, '\n');
}

void TraceFile::writeUntilClosed() {
    std::string lines;
    bool last = false;
    while (!last) {
        bool full = false;
        {
            std::unique_lock lock(mutex_);
            last = closing_.wait_for(lock, kBetweenWrites, [this] { return closed_; });
            full = pending_.size() > kMostPending;
            lines.clear();
            lines.swap(pending_);
        }
        const bool written = writeOut(lines);
        if (written && !full) continue;
        const std::string why = written ? "the disk is too slow" : reason(errno);
        {
            const std::lock_guard lock(mutex_);
            failed_ = true;
        }
        failure_("trace file \"" + name_ + "\" ends here: " + why);
        return;
    }
}

bool TraceFile::writeOut(const std::string& lines) {
    return std::fwrite(lines.data(), 1, lines.size(), file_.get()) == lines.size();
}

} // namespace trace
