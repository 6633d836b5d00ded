#pragma once

#include <chrono>
#include <functional>
#include <windows.h>

/// Runs the message loop until the condition holds. False when it never did.
inline bool pumpUntil(const std::function<bool()>& condition,
                      std::chrono::seconds patience = std::chrono::seconds(20)) {
    const auto latest = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > latest) return false;
        constexpr DWORD kLook = 5; // milliseconds
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kLook, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
    return true;
}
