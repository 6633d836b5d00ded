#include "watchdog/port.h"

#include "watchdog/io_ports.h"

#include <bit>
#include <cerrno>
#include <linux/gpio.h>
#include <linux/ppdev.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace watchdog {

namespace {

constexpr std::uint32_t kLastAddress = 0xFFFF;
constexpr std::uint64_t kAllLines = 255;
constexpr std::size_t kStackBytes = 64 * 1024; // all memory of this process is locked

/// A harmless access, which shows whether the descriptor is of the kind that was announced. Returns an errno.
int tryOut(Kind kind, int descriptor) {
    std::uint8_t latched = 0;
    gpio_v2_line_values values{.bits = 0, .mask = kAllLines};
    termios settings{};
    switch (kind) {
    case Kind::GuardLines:
        return ::ioctl(descriptor, GPIO_V2_LINE_GET_VALUES_IOCTL, &values) == 0 ? 0 : errno;
    case Kind::GuardSerial:
        return ::tcgetattr(descriptor, &settings) == 0 ? 0 : errno;
    default:
        return ::ioctl(descriptor, PPRDATA, &latched) == 0 ? 0 : errno;
    }
}

/// The last close of a serial device waits, for up to 30 s, until a stalled board has taken what was written.
/// A thread of its own waits; others may have the device meanwhile.
void closeSerial(int descriptor) {
    ::flock(descriptor, LOCK_UN);
    ::ioctl(descriptor, TIOCNXCL);
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    ::pthread_attr_setstacksize(&attributes, kStackBytes);
    const auto close = [](void* argument) -> void* {
        ::close(static_cast<int>(std::bit_cast<std::intptr_t>(argument)));
        return nullptr;
    };
    pthread_t thread{};
    void* const argument = std::bit_cast<void*>(static_cast<std::intptr_t>(descriptor));
    if (::pthread_create(&thread, &attributes, close, argument) != 0) close(argument);
    ::pthread_attr_destroy(&attributes);
}

} // namespace

int Port::guard(const Request& request, int descriptor) {
    if (request.kind == Kind::GuardAddress) {
        if (request.address == 0 || request.address > kLastAddress) return EINVAL;
        if (const int error = allowIoPort(request.address, true)) return error;
        if (request.address != address_) forget();
        address_ = request.address;
    } else {
        if (const int error = tryOut(request.kind, descriptor)) {
            ::close(descriptor);
            return error;
        }
        forget();
        descriptor_ = descriptor;
    }
    port_ = request;
    return 0;
}

void Port::forget() {
    if (descriptor_ >= 0 && port_.kind == Kind::GuardSerial) {
        closeSerial(descriptor_);
    } else if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
    if (address_ != 0) allowIoPort(address_, false);
    descriptor_ = -1;
    address_ = 0;
}

bool Port::off() const {
    if (address_ != 0) writeIoPort(address_, port_.off);
    if (descriptor_ < 0) return true;
    std::uint8_t byte = port_.off;
    gpio_v2_line_values values{.bits = port_.off, .mask = kAllLines};
    switch (port_.kind) {
    case Kind::GuardLines:
        return ::ioctl(descriptor_, GPIO_V2_LINE_SET_VALUES_IOCTL, &values) == 0;
    case Kind::GuardSerial:
        return sendOff();
    default:
        return ::ioctl(descriptor_, PPWDATA, &byte) == 0;
    }
}

bool Port::sendOff() const {
    // What waits to be sent may switch coils on.
    ::tcflush(descriptor_, TCOFLUSH);
    const ssize_t size = ::write(descriptor_, port_.message, port_.messageSize);
    const bool gone = size < 0 && errno != EAGAIN && errno != EINTR;
    return size == port_.messageSize || gone;
}

bool Port::sent() const {
    int waiting = 0;
    return descriptor_ < 0 || port_.kind != Kind::GuardSerial ||
           ::ioctl(descriptor_, TIOCOUTQ, &waiting) != 0 || waiting == 0;
}

} // namespace watchdog
