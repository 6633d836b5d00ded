#include "watchdog/windows/guard.h"

#include <cstring>

namespace watchdog {

namespace {

/// Report number 0, which the system needs before the 8 bytes; then command 5, the digital byte and both
/// analogue outputs.
constexpr std::uint8_t kBoardOff[] = {0, 5, 0, 0, 0, 0, 0, 0, 0};

constexpr DWORD kLook = 250; // milliseconds between looks at the signs of life
/// While the controller hangs, its outputs are written again and again: an endless loop may still write them.
constexpr DWORD kAgain = 100;
/// After the controller's end, a failed output is tried again at this interval, for this time.
constexpr DWORD kRetry = 10;
constexpr DWORD kLongestEnd = 2000;

} // namespace

void Guard::run() {
    const HANDLE sources[] = {inherited_.controller, inherited_.request};
    while (true) {
        const DWORD what =
            WaitForMultipleObjects(2, static_cast<const HANDLE*>(sources), FALSE, hung_ ? kAgain : kLook);
        if (what == WAIT_OBJECT_0 || what == WAIT_FAILED) end();
        if (shared_.crashed) {
            switchOff();
        } else if (what == WAIT_OBJECT_0 + 1) {
            obey();
        }
        lookAtSilence();
    }
}

void Guard::obey() {
    Request& request = shared_.request;
    if (request.kind == Kind::Bye) end();
    request.error = carryOut(request);
    SetEvent(inherited_.answer);
}

DWORD Guard::carryOut(Request& request) {
    switch (request.kind) {
    case Kind::GuardAddress:
        if (const DWORD error = ports_.load()) return error;
        forgetPort();
        address_ = request.address;
        takeOff(request);
        return 0;
    case Kind::GuardSerial:
        forgetPort();
        serial_.hold(reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(request.handle)));
        takeOff(request);
        return 0;
    case Kind::ForgetPort:
        forgetPort();
        return 0;
    case Kind::GuardBoard:
        return guardBoard(request);
    case Kind::ForgetBoard:
        forgetBoard();
        return 0;
    case Kind::Hello:
    case Kind::Bye:
        return 0;
    }
    return ERROR_INVALID_FUNCTION;
}

DWORD Guard::guardBoard(const Request& request) {
    if (request.path[0] == 0) {
        if (const DWORD error = boards_.load()) return error;
        forgetBoard();
        card_ = static_cast<long>(request.card);
        return 0;
    }
    const HANDLE board = CreateFileW(static_cast<const wchar_t*>(request.path), GENERIC_READ | GENERIC_WRITE,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OVERLAPPED, nullptr);
    if (board == INVALID_HANDLE_VALUE) return GetLastError();
    forgetBoard();
    board_.hold(board);
    return 0;
}

void Guard::takeOff(const Request& request) {
    offSize_ = request.size < kMostBytes ? request.size : static_cast<DWORD>(kMostBytes);
    std::memcpy(off_, request.off, offSize_);
}

void Guard::forgetPort() {
    serial_.hold(nullptr);
    address_ = 0;
}

void Guard::forgetBoard() {
    board_.hold(nullptr);
    card_ = -1;
}

void Guard::lookAtSilence() {
    const auto silence = static_cast<LONG64>(GetTickCount64()) - shared_.beat;
    if (!shared_.engineRuns || silence < static_cast<LONG64>(kSilenceMilliseconds)) {
        hung_ = false;
        return;
    }
    switchOff();
    if (hung_) return;
    hung_ = true;
    SetEvent(inherited_.tripped);
}

bool Guard::switchOff() {
    // The port first: nothing there can keep this waiting.
    if (address_ != 0) ports_.write(address_, off_[0]);
    serial_.send(static_cast<const std::uint8_t*>(off_), offSize_);
    board_.send(static_cast<const std::uint8_t*>(kBoardOff), sizeof kBoardOff);
    const bool serialOff = serial_.finish();
    const bool boardOff = board_.finish();
    const bool cardOff = card_ < 0 || boards_.switchOff(card_) == 0;
    return serialOff && boardOff && cardOff;
}

void Guard::end() {
    const ULONGLONG latest = GetTickCount64() + kLongestEnd;
    while (!switchOff() && GetTickCount64() < latest)
        Sleep(kRetry);
    ExitProcess(0);
}

} // namespace watchdog
