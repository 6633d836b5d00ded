#include "platform/windows/outside/storage.h"

#include "platform/windows/outside/handle.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"

namespace windows_ports {

namespace {

using Path = std::filesystem::path;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void fail(const Path& file, const std::string& what, const std::string& why) {
    throw runtime::FileError("\"" + file.filename().string() + "\" cannot be " + what + ": " + why);
}

[[noreturn]] void fail(const Path& file, const std::string& what) {
    fail(file, what, reason(GetLastError()));
}

bool isMissing() {
    return GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
}

/// Opens only plain files: a name such as "con" stands for a device. Null if it cannot be opened.
Handle open(const Path& file, DWORD access, const char* what) {
    Handle handle(CreateFileW(file.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle) return handle;
    BY_HANDLE_FILE_INFORMATION about{};
    if (GetFileType(handle.get()) != FILE_TYPE_DISK || !GetFileInformationByHandle(handle.get(), &about) ||
        (about.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        fail(file, what, "it is no plain file");
    }
    return handle;
}

void writeAll(HANDLE handle, const Path& file, std::size_t offset, std::string_view bytes, const char* what) {
    while (!bytes.empty()) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(static_cast<std::uint64_t>(offset) >> 32U);
        DWORD written = 0;
        if (!WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, &place))
            fail(file, what);
        if (written == 0) fail(file, what, reason(ERROR_DISK_FULL));
        bytes.remove_prefix(written);
        offset += written;
    }
}

} // namespace

std::optional<std::string> Storage::read(const Path& file, std::size_t limit) {
    const Handle handle = open(file, GENERIC_READ, "read");
    if (!handle && isMissing()) return std::nullopt;
    if (!handle) fail(file, "read");
    std::string bytes;
    for (;;) {
        constexpr DWORD kPiece = 16384;
        const std::size_t length = bytes.size();
        bytes.resize(length + kPiece);
        DWORD count = 0;
        if (!ReadFile(handle.get(), bytes.data() + length, kPiece, &count, nullptr)) fail(file, "read");
        bytes.resize(length + count);
        if (bytes.size() > limit)
            fail(file, "read", "it has more than " + std::to_string(limit / 1024) + " kB");
        if (count == 0) return bytes;
    }
}

void Storage::create(const Path& file, std::string_view bytes) {
    constexpr const char* kWhat = "created";
    Handle handle(CreateFileW(file.c_str(), GENERIC_WRITE, kShareAll, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle) fail(file, kWhat);
    try {
        writeAll(handle.get(), file, 0, bytes, kWhat);
    } catch (const runtime::FileError&) {
        handle = Handle();
        DeleteFileW(file.c_str());
        throw;
    }
}

void Storage::write(const Path& file, std::size_t offset, std::string_view bytes) {
    const Handle handle = open(file, GENERIC_WRITE, "written");
    if (!handle) fail(file, "written");
    writeAll(handle.get(), file, offset, bytes, "written");
}

void Storage::sync(const Path& file) {
    constexpr const char* kWhat = "brought to the disk";
    const Handle handle = open(file, GENERIC_WRITE, kWhat);
    // The file's name and the renames are in the journal of the file system, which goes to the disk with it.
    if (!handle || !FlushFileBuffers(handle.get())) fail(file, kWhat);
}

void Storage::rename(const Path& from, const Path& to) {
    if (!MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        fail(to, "written");
}

void Storage::remove(const Path& file) {
    if (!DeleteFileW(file.c_str()) && !isMissing()) fail(file, "removed");
}

} // namespace windows_ports
