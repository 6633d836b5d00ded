#include "watchdog/printer_port.h"

#include "watchdog/io_ports.h"

#include <cerrno>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace watchdog {

namespace {

constexpr std::uint8_t kAllOff = 0xFF; // a coil is energised by a 0
constexpr std::uint32_t kLastAddress = 0xFFFF;

} // namespace

int PrinterPort::guardDescriptor(int descriptor) {
    // Harmless, and shows whether writing works.
    std::uint8_t latched = 0;
    if (::ioctl(descriptor, PPRDATA, &latched) != 0) {
        const int error = errno;
        ::close(descriptor);
        return error;
    }
    forget();
    descriptor_ = descriptor;
    return 0;
}

int PrinterPort::guardAddress(std::uint32_t address) {
    if (address == 0 || address > kLastAddress) return EINVAL;
    if (const int error = allowIoPort(address, true)) return error;
    if (address != address_) forget();
    address_ = address;
    return 0;
}

void PrinterPort::forget() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (address_ != 0) allowIoPort(address_, false);
    descriptor_ = -1;
    address_ = 0;
}

bool PrinterPort::off() const {
    if (address_ != 0) writeIoPort(address_, kAllOff);
    if (descriptor_ < 0) return true;
    std::uint8_t byte = kAllOff;
    return ::ioctl(descriptor_, PPWDATA, &byte) == 0;
}

} // namespace watchdog
