#include "platform/windows/console.h"

#include "platform/windows/text.h"

#include <windows.h>

namespace windows_ports {

namespace {

bool leadsSomewhere(DWORD which) {
    const HANDLE handle = GetStdHandle(which);
    return handle && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

void write(DWORD which, const std::string& text) {
    const HANDLE handle = GetStdHandle(which);
    if (!handle || handle == INVALID_HANDLE_VALUE) return;
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(handle, &mode)) {
        const std::wstring characters = wide(text);
        WriteConsoleW(handle, characters.data(), static_cast<DWORD>(characters.size()), &written, nullptr);
    } else {
        WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
}

/// The handle lives as long as the program.
void lead(DWORD which) {
    const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (console != INVALID_HANDLE_VALUE) SetStdHandle(which, console);
}

} // namespace

void joinConsole() {
    const bool output = leadsSomewhere(STD_OUTPUT_HANDLE);
    const bool error = leadsSomewhere(STD_ERROR_HANDLE);
    // Attached in any case: Ctrl+C comes through it.
    AttachConsole(ATTACH_PARENT_PROCESS);
    if (!output) lead(STD_OUTPUT_HANDLE);
    if (!error) lead(STD_ERROR_HANDLE);
}

void openConsole() {
    joinConsole();
    if (hasOutput()) return;
    AllocConsole();
    lead(STD_OUTPUT_HANDLE);
    if (!leadsSomewhere(STD_ERROR_HANDLE)) lead(STD_ERROR_HANDLE);
}

void writeOutput(const std::string& utf8) {
    write(STD_OUTPUT_HANDLE, utf8);
}

void writeError(const std::string& utf8) {
    write(STD_ERROR_HANDLE, utf8);
}

bool hasOutput() {
    return leadsSomewhere(STD_OUTPUT_HANDLE);
}

void showMessage(const std::string& title, const std::string& text, bool isError) {
    const UINT icon = isError ? MB_ICONERROR : MB_ICONINFORMATION;
    MessageBoxW(nullptr, wide(text).c_str(), wide(title).c_str(), MB_OK | icon);
}

} // namespace windows_ports
