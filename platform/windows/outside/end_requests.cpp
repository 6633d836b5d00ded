#include "platform/windows/outside/end_requests.h"

#include "platform/windows/console.h"

#include <mutex>
#include <utility>

namespace windows_ports {

namespace {

constexpr DWORD kFarewell = 3000; // milliseconds; the system waits about five for a closed console's programs

// The system calls the console's handler with nothing of ours, on a thread of its own.
struct State {
    std::mutex mutex;
    std::function<void()> post; // none before deliver
    bool asked = false;
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

State& state() {
    static auto* const instance = new State; // a handler may wait in it until the process has ended
    return *instance;
}

} // namespace

EndRequests::EndRequests() {
    joinConsole(); // Ctrl+C comes through it
    ResetEvent(state().done);
    SetConsoleCtrlHandler(consoleEvent, TRUE);
}

EndRequests::~EndRequests() {
    SetConsoleCtrlHandler(consoleEvent, FALSE);
    const std::lock_guard lock(state().mutex);
    state().post = nullptr;
    SetEvent(state().done);
}

void EndRequests::deliver(std::function<void()> end) {
    const std::lock_guard lock(state().mutex);
    state().post = [slot = mailbox_.slot(), end = std::move(end)] { slot.post(end); };
    if (std::exchange(state().asked, false)) std::exchange(state().post, nullptr)();
}

BOOL WINAPI EndRequests::consoleEvent(DWORD event) noexcept {
    {
        const std::lock_guard lock(state().mutex);
        // Once: the user may press Ctrl+C again while the program ends.
        if (const auto post = std::exchange(state().post, nullptr)) {
            post();
        } else {
            state().asked = true;
        }
    }
    // After any other event the system ends the program as soon as this returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) WaitForSingleObject(state().done, kFarewell);
    return TRUE;
}

} // namespace windows_ports
