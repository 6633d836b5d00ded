#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The messages between the controller (the main program) and its watchdog: one structure per packet, over a
/// pair of SOCK_SEQPACKET sockets. Both programs come from one build, so the layout needs no version.
namespace watchdog {

/// The descriptors that are open when the watchdog starts.
constexpr int kSocket = 3;
constexpr int kController = 4; // pidfd of the controller, readable once the controller has ended
constexpr int kTripped = 5;    // eventfd, written after the outputs of a hanging controller were switched off

/// If the controller sends nothing for this time while an engine runs, it counts as hanging.
constexpr int kSilenceMilliseconds = 2000;

enum class Kind : std::uint8_t {
    Hello,           // asks only for an answer
    GuardDescriptor, // the printer port; its descriptor is sent with the packet
    GuardAddress,    // the printer port at an I/O address
    GuardLines,      // lines of a GPIO chip, in one request; its descriptor is sent with the packet
    GuardSerial,     // a board on a serial line; its descriptor is sent with the packet
    ForgetPort,
    GuardBoard, // the USB board behind a hidraw device
    ForgetBoard,
    Beat,  // the controller is alive
    Crash, // the controller is about to end, perhaps after a core dump of seconds
    Bye,   // the controller ends in good order
};

/// An ended message, and three bytes for each port of eight pins.
constexpr std::size_t kLongestMessage = 32;

struct Request {
    std::uint32_t number = 0; // the reply has the same number
    Kind kind = Kind::Beat;
    bool engineRuns = false;   // Beat
    std::uint32_t address = 0; // GuardAddress
    std::uint8_t off =
        0xFF; // GuardDescriptor, GuardAddress, GuardLines: the levels that leave every coil off
    std::uint8_t messageSize = 0; // GuardSerial: what switches every coil off
    std::uint8_t message[kLongestMessage] = {};
    char path[PATH_MAX] = {}; // GuardBoard, with its final zero

    /// The number of bytes to send: up to the end of the path.
    std::size_t size() const { return offsetof(Request, path) + std::strlen(path) + 1; }
};

/// The answer to each request except Beat, Crash and Bye.
struct Reply {
    std::uint32_t number = 0;
    std::int32_t error = 0; // errno; 0: done
};

} // namespace watchdog
