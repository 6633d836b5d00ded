#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// What the controller and its watchdog send each other: one structure a packet, over a pair of
/// SOCK_SEQPACKET sockets. Both programs come from one build, so the layout needs no version.
namespace watchdog {

/// The descriptors that the watchdog finds open at its start.
constexpr int kSocket = 3;
constexpr int kController = 4; // pidfd of the controller, readable from its end on
constexpr int kTripped = 5;    // eventfd, written when the watchdog has switched off a controller that hung

/// A controller that says no word for so long, while an engine runs, has hung.
constexpr int kSilenceMilliseconds = 2000;

enum class Kind : std::uint8_t {
    Hello,           // asks for the answer alone
    GuardDescriptor, // the printer port; its descriptor travels with the packet
    GuardAddress,    // the printer port at an I/O address
    ForgetPort,
    GuardBoard, // the USB board behind a hidraw device
    ForgetBoard,
    Beat,  // the controller is alive
    Crash, // the controller is about to end, perhaps after a core dump of seconds
    Bye,   // the controller ends in good order
};

struct Request {
    std::uint32_t number = 0; // the reply bears the same
    Kind kind = Kind::Beat;
    bool engineRuns = false;   // Beat
    std::uint32_t address = 0; // GuardAddress
    char path[PATH_MAX] = {};  // GuardBoard, with its final zero

    /// The bytes to send: all up to the end of the path.
    std::size_t size() const { return offsetof(Request, path) + std::strlen(path) + 1; }
};

/// Answers each request but Beat, Crash and Bye.
struct Reply {
    std::uint32_t number = 0;
    std::int32_t error = 0; // errno; 0: done
};

} // namespace watchdog
