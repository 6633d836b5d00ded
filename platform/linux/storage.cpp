#include "platform/linux/storage.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

namespace linux_ports {

namespace {

using Path = std::filesystem::path;

[[noreturn]] void fail(const Path& file, const std::string& what, const std::string& why) {
    throw runtime::FileError("\"" + file.filename().string() + "\" cannot be " + what + ": " + why);
}

/// Opens only plain files: opening a FIFO or a device may block or trigger something.
FileDescriptor openPlain(const Path& file, int flags, const char* what) {
    struct stat state {};
    const auto check = [&](int result) {
        if (result != 0) fail(file, what, reason(errno));
        if (S_ISDIR(state.st_mode)) fail(file, what, reason(EISDIR));
        if (!S_ISREG(state.st_mode)) fail(file, what, "it is no plain file");
    };
    check(::stat(file.c_str(), &state));
    FileDescriptor fd(::open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd) fail(file, what, reason(errno));
    check(::fstat(fd.get(), &state));
    return fd;
}

void writeAll(int fd, const Path& file, std::size_t offset, std::string_view bytes, const char* what) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) fail(file, what, reason(written < 0 ? errno : ENOSPC));
        bytes.remove_prefix(static_cast<std::size_t>(written));
        offset += static_cast<std::size_t>(written);
    }
}

/// Some file systems report a failed write only at this call.
void closeChecked(FileDescriptor fd, const Path& file, const char* what) {
    const int own = ::dup(fd.get());
    if (own >= 0 && ::close(own) != 0) fail(file, what, reason(errno));
}

} // namespace

Storage::Storage() {
    // Only the event loop's thread handles signals.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    jobs_.emplace();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

std::optional<std::string> Storage::read(const Path& file, std::size_t limit) {
    struct stat state {};
    if (::stat(file.c_str(), &state) != 0 && errno == ENOENT) return std::nullopt;
    const FileDescriptor fd = openPlain(file, O_RDONLY, "read");
    std::string bytes;
    for (;;) {
        const std::size_t length = bytes.size();
        constexpr std::size_t kPiece = 16384;
        bytes.resize(length + kPiece);
        const ssize_t count = ::read(fd.get(), bytes.data() + length, kPiece);
        if (count < 0 && errno != EINTR) fail(file, "read", reason(errno));
        bytes.resize(length + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (bytes.size() > limit)
            fail(file, "read", "it has more than " + std::to_string(limit / 1024) + " kB");
        if (count == 0) return bytes;
    }
}

void Storage::create(const Path& file, std::string_view bytes) {
    constexpr const char* kWhat = "created";
    FileDescriptor fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!fd) fail(file, kWhat, reason(errno));
    try {
        writeAll(fd.get(), file, 0, bytes, kWhat);
        closeChecked(std::move(fd), file, kWhat);
    } catch (const runtime::FileError&) {
        ::unlink(file.c_str());
        throw;
    }
}

void Storage::write(const Path& file, std::size_t offset, std::string_view bytes) {
    FileDescriptor fd = openPlain(file, O_WRONLY, "written");
    writeAll(fd.get(), file, offset, bytes, "written");
    closeChecked(std::move(fd), file, "written");
}

void Storage::sync(const Path& file) {
    const Path parent = file.parent_path().empty() ? "." : file.parent_path();
    for (const auto& [name, flags] : {std::pair(file, O_RDONLY), std::pair(parent, O_RDONLY | O_DIRECTORY)}) {
        const FileDescriptor fd(::open(name.c_str(), flags | O_CLOEXEC | O_NONBLOCK));
        // Some file systems cannot sync a folder, or cannot sync at all.
        if (!fd || (::fsync(fd.get()) != 0 && errno != EINVAL && errno != ENOTSUP))
            fail(file, "brought to the disk", reason(errno));
    }
}

void Storage::rename(const Path& from, const Path& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) fail(to, "written", reason(errno));
}

void Storage::remove(const Path& file) {
    if (::unlink(file.c_str()) != 0 && errno != ENOENT) fail(file, "removed", reason(errno));
}

} // namespace linux_ports
