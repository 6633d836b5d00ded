#include "platform/windows/outside/work_folder.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <string>

namespace windows_ports {

WorkFolder::WorkFolder(const std::filesystem::path& folder) : path_(std::filesystem::absolute(folder)) {
    const auto refuse = [this](const std::string& words) {
        throw runtime::ObjectError("folder \"" + path_.string() + "\" " + words);
    };
    std::error_code error;
    std::filesystem::create_directories(path_, error);
    if (error) refuse("cannot be created: " + error.message());
    lock_ = Handle(CreateFileW((path_ / kLock).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                               FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (lock_) return;
    if (GetLastError() == ERROR_SHARING_VIOLATION) refuse("is in use by another Twinstep");
    refuse("cannot be written: " + reason(GetLastError()));
}

std::filesystem::path programFolder() {
    std::wstring name(MAX_PATH, L'\0');
    DWORD size = 0;
    while ((size = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()))) == name.size())
        name.resize(name.size() * 2);
    name.resize(size);
    return std::filesystem::path(name).parent_path();
}

} // namespace windows_ports
