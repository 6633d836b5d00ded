#include "platform/windows/program.h"

#include "platform/windows/text.h"

#include <atomic>
#include <shellapi.h>

namespace windows_ports {

namespace {

constexpr UINT kQuit = WM_APP;
constexpr DWORD kFarewell = 3000; // milliseconds; the system waits about five for a closed console's programs

// The system calls the console's handler with nothing of ours.
std::atomic<HWND> window = nullptr;
HANDLE done = nullptr;

} // namespace

std::vector<std::string> arguments() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int at = 1; words && at < count; ++at)
        result.push_back(utf8(words[at]));
    LocalFree(static_cast<void*>(words));
    return result;
}

Program::Program()
    : window_(Window::Kind::TopLevel,
              [this](UINT message, WPARAM wParam, LPARAM) { return handle(message, wParam); }) {
    window = window_.handle();
    done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(consoleEvent, TRUE);
}

Program::~Program() {
    window = nullptr;
    // The handle stays open: a handler may be waiting for it on another thread.
    SetEvent(done);
}

void Program::run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
}

void Program::quit() {
    PostMessageW(window_.handle(), kQuit, 0, 0);
}

std::optional<LRESULT> Program::handle(UINT message, WPARAM wParam) {
    switch (message) {
    case WM_CLOSE: // how a task manager asks a program to end
    case kQuit:
        PostQuitMessage(0);
        return 0;
    case WM_ENDSESSION:
        if (wParam && farewell_) farewell_();
        return 0;
    default:
        return std::nullopt;
    }
}

BOOL WINAPI Program::consoleEvent(DWORD event) noexcept {
    const HWND known = window;
    if (!known) return FALSE;
    PostMessageW(known, kQuit, 0, 0);
    // After any other event the system ends the program as soon as this returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) WaitForSingleObject(done, kFarewell);
    return TRUE;
}

} // namespace windows_ports
