#include "watchdog/windows/guard.h"

#include <cwchar>
#include <shellapi.h>

namespace {

constexpr UINT kUsageError = 2;
/// The system ends the session's programs from the highest number to the lowest; other programs have 0x280.
constexpr DWORD kLast = 0x100;

/// False if the controller did not start this program.
bool readArguments(watchdog::Inherited& inherited) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!words || count != watchdog::kInherited + 1) return false;
    HANDLE* const handles[] = {&inherited.memory, &inherited.controller, &inherited.request,
                               &inherited.answer, &inherited.tripped};
    for (int at = 0; at < watchdog::kInherited; ++at)
        *handles[at] =
            reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(std::wcstoull(words[at + 1], nullptr, 10)));
    return true;
}

} // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, char* /*commandLine*/, int /*show*/) {
    watchdog::Inherited inherited{};
    void* const memory = readArguments(inherited)
                             ? MapViewOfFile(inherited.memory, FILE_MAP_WRITE, 0, 0, sizeof(watchdog::Shared))
                             : nullptr;
    if (!memory) {
        MessageBoxW(nullptr, L"Twinstep starts this program; it does nothing by itself.",
                    L"Twinstep watchdog", MB_OK);
        return kUsageError;
    }
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetProcessShutdownParameters(kLast, 0);
    SetPriorityClass(GetCurrentProcess(), HIGH_PRIORITY_CLASS);
    watchdog::Guard(inherited, *static_cast<watchdog::Shared*>(memory)).run();
}
