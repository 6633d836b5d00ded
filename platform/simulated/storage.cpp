#include "platform/simulated/storage.h"

#include "runtime/errors.h"

#include <algorithm>

namespace simulated {

namespace {

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& words) {
    throw runtime::FileError("\"" + file.filename().string() + "\" cannot be " + words);
}

} // namespace

bool Storage::happens(const Path& file, std::size_t* part) {
    if (dead_) return false;
    if (calls_++ != failing_) return true;
    const bool half = part && (fault_ == Fault::Short || fault_ == Fault::KillHalf);
    if (part) *part = half ? *part / 2 : 0;
    dead_ = fault_ != Fault::Error && fault_ != Fault::Short;
    if (dead_ || half) return half;
    fail(file, "written: Input/output error");
}

std::optional<std::string> Storage::read(const Path& file, std::size_t limit) {
    if (file == unreadable_) fail(file, "read: Input/output error");
    const auto found = names_.find(file);
    if (found == names_.end()) return std::nullopt;
    if (found->second->now.size() > limit) fail(file, "read: it is too long");
    return found->second->now;
}

void Storage::create(const Path& file, std::string_view bytes) {
    if (exists(file)) fail(file, "created: File exists");
    std::size_t part = bytes.size();
    if (!happens(file, &part)) return;
    names_[file] = std::make_shared<File>(File{std::string(bytes.substr(0, part)), {}});
    if (part == bytes.size() || dead_) return;
    names_.erase(file);
    fail(file, "created: No space left on device");
}

void Storage::write(const Path& file, std::size_t offset, std::string_view bytes) {
    std::size_t part = bytes.size();
    if (!happens(file, &part)) return;
    const auto found = names_.find(file);
    if (found == names_.end()) fail(file, "written: No such file or directory");
    std::string& now = found->second->now;
    now.resize(std::max(now.size(), offset + part));
    now.replace(offset, part, bytes.substr(0, part));
    if (part != bytes.size() && !dead_) fail(file, "written: No space left on device");
}

void Storage::sync(const Path& file) {
    if (!happens(file)) return;
    const auto found = names_.find(file);
    if (found == names_.end()) fail(file, "brought to the disk: No such file or directory");
    found->second->synced = found->second->now;
    syncedNames_ = names_;
}

void Storage::rename(const Path& from, const Path& to) {
    if (!happens(to)) return;
    const auto found = names_.find(from);
    if (found == names_.end()) fail(to, "written: No such file or directory");
    names_[to] = found->second;
    names_.erase(from);
    if (from == unreadable_) unreadable_ = to;
}

void Storage::remove(const Path& file) {
    if (exists(file) && happens(file)) names_.erase(file);
}

void Storage::later(std::function<void()> job) {
    jobs_.push_back(std::move(job));
    if (!holdsJobs) finish();
}

void Storage::finish() {
    while (!jobs_.empty()) {
        const std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        job();
    }
}

void Storage::failAt(int call, Fault fault) {
    failing_ = calls_ + call;
    fault_ = fault;
}

void Storage::restart() {
    if (dead_ && (fault_ == Fault::PowerCut || fault_ == Fault::PowerCutNamed)) {
        if (fault_ == Fault::PowerCut) names_ = syncedNames_;
        for (const auto& [name, file] : names_)
            file->now = file->synced;
    }
    dead_ = false;
    failing_ = -1;
    unreadable_.clear();
}

void Storage::put(const Path& file, const std::string& bytes) {
    names_[file] = std::make_shared<File>(File{bytes, bytes});
    syncedNames_ = names_;
}

std::string Storage::bytesOf(const Path& file) {
    const auto found = names_.find(file);
    return found == names_.end() ? std::string() : found->second->now;
}

} // namespace simulated
