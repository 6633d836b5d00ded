#include "watchdog/io_ports.h"

#include <cerrno>
#include <sys/io.h>

namespace watchdog {

int allowIoPort(std::uint32_t address, bool allowed) {
    return ::ioperm(address, 1, allowed ? 1 : 0) == 0 ? 0 : errno;
}

void writeIoPort(std::uint32_t address, std::uint8_t value) {
    ::outb(value, static_cast<unsigned short>(address));
}

} // namespace watchdog
