#include "platform/trace/trace_file.h"

#include "platform/trace/open_for_writing.h"
#include "runtime/errors.h"
#include "runtime/plain_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <system_error>

namespace trace {

namespace {

constexpr auto kBetweenWrites = std::chrono::milliseconds(50);
/// The most bytes that wait while the disk hangs: over a minute of both engines at full speed.
constexpr std::size_t kMostPending = 16U << 20;

std::string reason(int error) {
    return std::generic_category().message(error);
}

std::FILE* openAnew(const std::filesystem::path& path) {
    const std::string name = "trace file \"" + path.string() + "\"";
    if (const std::string fault = runtime::faultOfFile(path, TraceFile::kLongest); !fault.empty())
        throw runtime::FileError(name + " " + fault);
    std::FILE* file = openForWriting(path);
    if (!file) throw runtime::FileError("cannot open " + name + ": " + reason(errno));
    return file;
}

/// The real target of a write to `path`: follows links, even a link to a file that does not exist yet.
std::filesystem::path destination(std::filesystem::path path) {
    constexpr int kMostLinks = 40; // the system's own limit
    std::error_code error;
    for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, error); ++links)
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
}

} // namespace

TraceFile::TraceFile(const std::filesystem::path& path, Clock::time_point start, Failure failure)
    : name_(path.string()), start_(start), failure_(std::move(failure)), file_(openAnew(path)) {
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
        length_ += lines.size();
        const bool longest = length_ > kLongest - kMostPending;
        if (written && !full && !longest) continue;
        const std::string why = !written ? reason(errno)
                                : full   ? "the disk is too slow"
                                         : "it is as long as a trace may be";
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

std::optional<std::string> ownFile(const std::filesystem::path& trace, const std::filesystem::path& folder,
                                   std::span<const std::string_view> names) {
    const auto isOwn = [&](const std::filesystem::path& file) {
        const std::string name = file.filename().string();
        return file.extension() == ".cfg" ||
               std::ranges::any_of(names, [&](std::string_view own) { return name.starts_with(own); });
    };
    std::error_code error;
    const std::filesystem::path goesTo = destination(trace);
    const std::string name = goesTo.filename().string();
    // A named configuration and its table may lie in any folder.
    if (goesTo.extension() == ".cfg" || name.ends_with("HiResMem.txt") ||
        (isOwn(goesTo) && goesTo.parent_path() == std::filesystem::weakly_canonical(folder, error)))
        return name;
    // The same file by another name.
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        std::error_code none;
        if (isOwn(entry.path()) && std::filesystem::equivalent(entry.path(), goesTo, none))
            return entry.path().filename().string();
    }
    return std::nullopt;
}

} // namespace trace
