#include "watchdog/windows/libraries.h"

namespace watchdog {

namespace {

/// Of the program's own folder alone: a library of that name elsewhere is not the user's choice.
HMODULE loadBeside(const wchar_t* name) {
    return LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}

template <class Function>
bool find(HMODULE library, const char* name, Function& function) {
    // Through void*, so that the compiler does not take the cast for a mistake.
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    return function != nullptr;
}

} // namespace

DWORD PortLibrary::load() {
    if (out_) return 0;
    const HMODULE library = loadBeside(L"inpoutx64.dll");
    return library && find(library, "Out32", out_) ? 0 : GetLastError();
}

void PortLibrary::write(unsigned address, unsigned char value) const {
    out_(static_cast<short>(address), value);
}

DWORD BoardLibrary::load() {
    if (close_) return 0;
    const HMODULE library = loadBeside(L"k8055d.dll");
    return library && find(library, "OpenDevice", open_) && find(library, "WriteAllDigital", write_) &&
                   find(library, "CloseDevice", close_)
               ? 0
               : GetLastError();
}

DWORD BoardLibrary::switchOff(long card) const {
    if (open_(card) != card) return ERROR_NOT_READY;
    write_(0);
    close_();
    return 0;
}

} // namespace watchdog
