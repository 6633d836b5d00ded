#include "platform/windows/outside/position_file.h"

#include "platform/windows/outside/storage.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>

namespace windows_ports {

namespace {

constexpr std::size_t kLongest = 4096; // bytes; a longer file is not ours

} // namespace

PositionFile::PositionFile(std::filesystem::path path, Failure failure)
    : path_(std::move(path)), failure_(std::move(failure)) {}

PositionFile::~PositionFile() {
    unmap();
}

void PositionFile::fail(const std::string& what) const {
    throw runtime::FileError("\"" + path_.filename().string() + "\" cannot be " + what + ": " +
                             reason(GetLastError()));
}

std::optional<std::string> PositionFile::leftOver() {
    return Storage().read(path_, kLongest);
}

std::span<std::byte> PositionFile::create(std::span<const std::byte> bytes) {
    unmap();
    // The old file stays until the new file is complete. A mapped file could not take its place.
    std::filesystem::path part = path_;
    part += ".new";
    Storage storage;
    storage.remove(part);
    storage.create(part, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    storage.rename(part, path_);
    file_ = Handle(CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const Handle mapping(file_ ? CreateFileMappingW(file_.get(), nullptr, PAGE_READWRITE, 0,
                                                    static_cast<DWORD>(bytes.size()), nullptr)
                               : nullptr);
    void* const memory = mapping ? MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, bytes.size()) : nullptr;
    if (!memory) fail("written");
    memory_ = {static_cast<std::byte*>(memory), bytes.size()};
    changed_ = true;
    flusher_.begin([this] { return flush(); });
    return memory_;
}

void PositionFile::remove() {
    changed_ = false; // the exit need not wait for the disk
    unmap();
    DeleteFileW(path_.c_str());
}

void PositionFile::unmap() {
    flusher_.end();
    if (!memory_.empty()) UnmapViewOfFile(memory_.data());
    memory_ = {};
    file_ = Handle();
}

bool PositionFile::flush() {
    if (!changed_.exchange(false, std::memory_order_acquire)) return true;
    if (FlushViewOfFile(memory_.data(), memory_.size()) && FlushFileBuffers(file_.get())) return true;
    failure_("\"" + path_.filename().string() + "\" cannot be written: " + reason(GetLastError()) +
             ". A power failure would lose the positions of this session.");
    return false;
}

} // namespace windows_ports
