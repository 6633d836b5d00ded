#include "platform/windows/outside/library.h"

#include "platform/windows/outside/work_folder.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"

namespace windows_ports {

namespace {

std::string whyNotLoaded(const std::string& file, DWORD error) {
    const std::string folder = programFolder().string();
    switch (error) {
    case ERROR_MOD_NOT_FOUND:
        if (Library::isThere(file)) return file + " needs another library, which is missing";
        return file + " is missing: put it into " + folder + ", beside twinstep.exe";
    case ERROR_BAD_EXE_FORMAT:
        return file + " in " + folder + " is no 64-bit library: get the one for 64-bit programs";
    default:
        return file + " cannot be loaded: " + reason(error);
    }
}

} // namespace

Library::Library(const std::string& file)
    : file_(file),
      library_(LoadLibraryExW((programFolder() / file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
    if (!library_) throw runtime::ObjectError(whyNotLoaded(file, GetLastError()));
}

bool Library::isThere(const std::string& file) {
    std::error_code error;
    return std::filesystem::exists(programFolder() / file, error);
}

void* Library::address(const char* name) const {
    if (void* const found = reinterpret_cast<void*>(GetProcAddress(library_, name))) return found;
    throw runtime::ObjectError(file_ + " is another library of that name: it has no function " + name);
}

} // namespace windows_ports
