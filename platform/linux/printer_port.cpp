#include "platform/linux/printer_port.h"

#include "runtime/errors.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

namespace linux_ports {

namespace {

std::string whyNotOpened(int error) {
    switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return "there is no such printer port (is the module ppdev loaded?)";
    case EACCES:
    case EPERM:
        return "no permission; add yourself to the group lp (sudo adduser $USER lp) and log in again";
    default:
        return reason(error);
    }
}

std::string whyNotClaimed(int error) {
    switch (error) {
    // The kernel answers "no such device" also when another driver holds the port.
    case ENXIO:
    case EBUSY:
    case EAGAIN:
        return "in use by another driver (often the printer driver: sudo rmmod lp), or no port behind it";
    case ENOTTY:
        return "this is not a printer port";
    default:
        return "cannot be claimed: " + reason(error);
    }
}

} // namespace

PrinterPort::PrinterPort(std::string device)
    : device_(std::move(device)), fd_(::open(device_.c_str(), O_RDWR | O_CLOEXEC)) {
    if (!fd_) refuse(whyNotOpened(errno));
    if (::ioctl(fd_.get(), PPEXCL) != 0 || ::ioctl(fd_.get(), PPCLAIM) != 0) refuse(whyNotClaimed(errno));
    int direction = 0; // 0: the data lines are outputs
    if (::ioctl(fd_.get(), PPDATADIR, &direction) != 0) {
        refuse("cannot turn the data lines to outputs: " + reason(errno));
    }
    std::uint8_t latched = 0;
    if (::ioctl(fd_.get(), PPRDATA, &latched) != 0) refuse("cannot read the data lines: " + reason(errno));
    data_ = latched;
}

void PrinterPort::clearBit(int bit) {
    write(data_ & ~(1U << bit));
}

void PrinterPort::setBit(int bit) {
    write(data_ | (1U << bit));
}

void PrinterPort::write(unsigned data) {
    auto byte = static_cast<std::uint8_t>(data);
    if (::ioctl(fd_.get(), PPWDATA, &byte) != 0) refuse("cannot write: " + reason(errno));
    data_ = byte;
}

void PrinterPort::refuse(const std::string& words) const {
    throw runtime::ObjectError(device_ + ": " + words);
}

} // namespace linux_ports
