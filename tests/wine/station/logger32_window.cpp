// A window of Logger32's kind, for the tests: it answers subscriptions as Logger32 does.
//
// logger32_window [TITLE], TITLE "Logger32" unless given, and on the standard input, one a line:
//   frequency HERTZ   tells every subscriber
//   count, close PROGRAM, end PROGRAM   see obeyCommon
//   quit              ends the program
// It prints "ready", "subscribed HANDLE", "unsubscribed", and what obeyCommon does.

#include "tests/wine/station/commands.h"

#include <cstdlib>
#include <set>
#include <string>
#include <windows.h>

namespace {

// What wParam says in a message named "Logger32".
constexpr WPARAM kSubscribe = 3;
constexpr WPARAM kUnsubscribe = 4;
constexpr WPARAM kFrequency = 100;

/// One for the process: a window procedure has no argument of the caller's.
struct Logger {
    UINT message = 0;
    std::set<HWND> subscribers;
};

Logger logger;

void onLoggerMessage(WPARAM wParam, LPARAM lParam) {
    if (wParam == kSubscribe) {
        logger.subscribers.insert(reinterpret_cast<HWND>(lParam));
        print("subscribed " + std::to_string(lParam));
    } else if (wParam == kUnsubscribe) {
        // The message does not say who: everybody goes, as with one listener it must.
        logger.subscribers.clear();
        print("unsubscribed");
    }
}

LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == logger.message) {
        onLoggerMessage(wParam, lParam);
        return 0;
    }
    if (message == WM_DESTROY) PostQuitMessage(EXIT_SUCCESS);
    return DefWindowProcA(window, message, wParam, lParam);
}

void obey(HWND window, const std::string& command) {
    if (const auto hertz = argumentOf(command, "frequency")) {
        for (HWND subscriber : logger.subscribers)
            PostMessageA(subscriber, logger.message, kFrequency, std::stol(*hertz));
    } else if (command == "quit") {
        DestroyWindow(window);
    } else if (!obeyCommon(command)) {
        print("unknown command: " + command);
    }
}

} // namespace

int main(int argc, char** argv) {
    logger.message = RegisterWindowMessageA("Logger32");
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = onMessage;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = "StationLog";
    RegisterClassA(&windowClass);
    HWND window = CreateWindowA("StationLog", argc > 1 ? argv[1] : "Logger32", WS_OVERLAPPEDWINDOW, 0, 0, 200,
                                100, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (!window) {
        print("the window could not be made");
        return EXIT_FAILURE;
    }
    readCommands();
    print("ready");

    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == nullptr && message.message == kCommandMessage) {
            obey(window, takeCommand(message.lParam));
        } else {
            DispatchMessageA(&message);
        }
    }
    return EXIT_SUCCESS;
}
