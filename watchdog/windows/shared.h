#pragma once

#include <cstddef>
#include <cstdint>
#include <windows.h>

/// Between the controller (the main program) and its watchdog: a piece of shared memory. Both programs come
/// from one build, so the layout needs no version.
namespace watchdog {

/// If the controller gives no sign of life for this time while an engine runs, it counts as hanging.
constexpr DWORD kSilenceMilliseconds = 2000;

enum class Kind : std::uint32_t {
    Hello,        // asks only for an answer
    GuardAddress, // the printer port at an I/O address, through inpoutx64.dll
    GuardSerial,  // a board on a serial port: a handle, and the bytes that switch its outputs off
    ForgetPort,
    GuardBoard, // a K8055 behind its HID path, or through k8055d.dll where the path is empty
    ForgetBoard,
    Bye, // the controller ends in good order; without an answer
};

constexpr std::size_t kLongestPath = 1024; // characters
constexpr std::size_t kMostBytes = 128;

/// The request is the controller's until it sets the event, and the watchdog's until it answers.
struct Request {
    Kind kind = Kind::Hello;
    std::uint32_t address = 0;         // GuardAddress
    std::uint32_t card = 0;            // GuardBoard: 0 to 3
    wchar_t path[kLongestPath] = {};   // GuardBoard, with its final zero
    std::uint64_t handle = 0;          // GuardSerial: belongs to the watchdog's process
    std::uint32_t size = 0;            // of `off`
    std::uint8_t off[kMostBytes] = {}; // what switches all coils off: one byte for an address
    std::uint32_t error = 0;           // the answer: of GetLastError; 0: done
};

struct Shared {
    // Written at any time.
    volatile LONG64 beat = 0; // GetTickCount64 at the last sign of life
    volatile LONG engineRuns = 0;
    volatile LONG crashed = 0; // the controller is about to end, perhaps after a report of seconds

    Request request;
};

/// The inherited handles, in the order of the watchdog's arguments, each a decimal number.
struct Inherited {
    HANDLE memory;     // of Shared
    HANDLE controller; // the process
    HANDLE request;    // event: there is a request, or a crash
    HANDLE answer;     // event
    HANDLE tripped;    // event: the outputs of a hanging controller were switched off
};
constexpr int kInherited = 5;

} // namespace watchdog
