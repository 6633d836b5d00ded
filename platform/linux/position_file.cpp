#include "platform/linux/position_file.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace linux_ports {

namespace {

constexpr std::size_t kLongest = 4096; // bytes; a longer file is not ours

} // namespace

PositionFile::PositionFile(std::filesystem::path path, Failure failure)
    : path_(std::move(path)), failure_(std::move(failure)) {}

PositionFile::~PositionFile() {
    unmap();
}

std::string PositionFile::named() const {
    return "\"" + path_.filename().string() + "\"";
}

std::optional<std::string> PositionFile::leftOver() {
    // Non-blocking: otherwise a pipe with this name would block the start.
    const FileDescriptor fd(::open(path_.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!fd && errno == ENOENT) return std::nullopt;
    if (!fd) throw runtime::FileError(named() + " cannot be read: " + reason(errno));
    struct stat status {};
    if (::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw runtime::FileError(named() + " is no plain file");
    std::array<char, kLongest> bytes{};
    const ssize_t size = ::read(fd.get(), bytes.data(), bytes.size());
    if (size < 0) throw runtime::FileError(named() + " cannot be read: " + reason(errno));
    return std::string(bytes.data(), static_cast<std::size_t>(size));
}

std::span<std::byte> PositionFile::create(std::span<const std::byte> bytes) {
    unmap();
    // The old file stays until the new file is complete.
    std::filesystem::path part = path_;
    part += ".new";
    const auto refuse = [&](int error) {
        ::unlink(part.c_str());
        throw runtime::FileError(named() + " cannot be written: " + reason(error));
    };
    ::unlink(part.c_str());
    const FileDescriptor fd(::open(part.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!fd || ::fstat(fd.get(), &mapped_) != 0) refuse(errno);
    // A full disk must fail here: later it would crash the program in the middle of a step.
    if (const int error = ::posix_fallocate(fd.get(), 0, static_cast<off_t>(bytes.size()))) refuse(error);
    void* memory = ::mmap(nullptr, bytes.size(), PROT_READ | PROT_WRITE, MAP_SHARED, fd.get(), 0);
    if (memory == MAP_FAILED) refuse(errno);
    memory_ = {static_cast<std::byte*>(memory), bytes.size()};
    std::copy(bytes.begin(), bytes.end(), memory_.begin());
    if (::rename(part.c_str(), path_.c_str()) != 0) {
        const int error = errno;
        unmap();
        refuse(error);
    }
    changed_ = true;
    flusher_.begin([this] { return flush(); });
    return memory_;
}

void PositionFile::remove() {
    changed_ = false; // the exit need not wait for the disk
    unmap();
    ::unlink(path_.c_str());
}

void PositionFile::unmap() {
    flusher_.end();
    if (!memory_.empty()) ::munmap(memory_.data(), memory_.size());
    memory_ = {};
}

bool PositionFile::inPlace() const {
    struct stat now {};
    return ::lstat(path_.c_str(), &now) == 0 && now.st_dev == mapped_.st_dev &&
           now.st_ino == mapped_.st_ino && static_cast<std::size_t>(now.st_size) >= memory_.size();
}

bool PositionFile::flush() {
    if (!inPlace()) {
        failure_(named() + " was removed, replaced or cut short by another program. A crash would "
                           "lose the positions of this session.");
        return false;
    }
    if (!changed_.exchange(false, std::memory_order_acquire)) return true;
    if (::msync(memory_.data(), memory_.size(), MS_SYNC) == 0) return true;
    failure_(named() + " cannot be written: " + reason(errno) +
             ". A power failure would lose the positions of this session.");
    return false;
}

} // namespace linux_ports
