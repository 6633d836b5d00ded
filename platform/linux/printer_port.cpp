#include "platform/linux/printer_port.h"

#include "runtime/errors.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <future>
#include <linux/ppdev.h>
#include <set>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>

namespace linux_ports {

namespace {

namespace fs = std::filesystem;

/// Throws with the device's name before the words.
[[noreturn]] void refuse(const std::string& device, const std::string& words) {
    throw runtime::ObjectError(device + ": " + words);
}

std::string whyNotOpened(int error) {
    switch (error) {
    case ENOENT:
        return "there is no such printer port (are the modules parport_pc and ppdev loaded?)";
    case ENXIO:
    case ENODEV:
        return "there is no printer port behind it";
    case EACCES:
    case EPERM:
        return "no permission: add yourself to the group lp (sudo adduser $USER lp) and log in again";
    case EISDIR:
        return "this is not a printer port";
    default:
        return reason(error);
    }
}

/// Names of the drivers that have registered with the port behind the device, "lp, ppdev0".
std::string driversOf(const std::string& device, const fs::path& drivers) {
    struct stat status {};
    if (::stat(device.c_str(), &status) != 0) return {};
    // The minor number of a ppdev device is its port's.
    const fs::path folder = drivers / ("parport" + std::to_string(minor(status.st_rdev))) / "devices";
    std::set<std::string> names; // beside the folders there is a file that names the active driver
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none)) {
        if (entry.is_directory(none)) names.insert(entry.path().filename().string());
    }
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

std::string whyNotClaimed(int error, const std::string& device, const fs::path& drivers) {
    switch (error) {
    // The kernel answers "no such device" also when another driver has the port.
    case ENXIO:
    case EBUSY:
    case EAGAIN: {
        const std::string names = driversOf(device, drivers);
        if (names.empty()) return "in use by another driver, or no printer port behind it";
        return "in use by another driver: " + names +
               (names == "lp" ? " (the printer driver: sudo rmmod lp)" : "");
    }
    case ENODEV:
        return "there is no printer port behind it";
    default:
        return "cannot be claimed: " + reason(error);
    }
}

struct Claimed {
    FileDescriptor fd;
    unsigned data;
};

Claimed claim(const std::string& device, const fs::path& drivers) {
    FileDescriptor fd(::open(device.c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (!fd) refuse(device, whyNotOpened(errno));
    // Exclusively, so that the claim fails where another driver has registered, rather than to wait for it.
    if (::ioctl(fd.get(), PPEXCL) != 0) refuse(device, "this is not a printer port: " + reason(errno));
    if (::ioctl(fd.get(), PPCLAIM) != 0) {
        refuse(device, whyNotClaimed(errno, device, drivers));
    }
    int direction = 0; // 0: the data lines are outputs
    if (::ioctl(fd.get(), PPDATADIR, &direction) != 0) {
        refuse(device, "cannot turn the data lines to outputs: " + reason(errno));
    }
    std::uint8_t latched = 0;
    if (::ioctl(fd.get(), PPRDATA, &latched) != 0) {
        refuse(device, "cannot read the data lines: " + reason(errno));
    }
    return {std::move(fd), latched};
}

/// Claims on a thread of its own. An exclusive claim does not wait for other drivers of the port, but all of
/// ppdev has one lock, which a program that waits for another port keeps, and the first claim may load a
/// module. A claim that comes too late is given back by the thread.
Claimed claimWithin(const std::string& device, const PrinterPort::Limits& limits) {
    std::packaged_task<Claimed()> task([device, drivers = limits.drivers] { return claim(device, drivers); });
    auto claimed = task.get_future();
    std::thread(std::move(task)).detach();
    if (claimed.wait_for(limits.patience) != std::future_status::ready) {
        refuse(device, "the driver does not answer (does another program wait for a printer port?)");
    }
    return claimed.get();
}

} // namespace

PrinterPort::PrinterPort(std::string device, const Limits& limits) : device_(std::move(device)) {
    Claimed claimed = claimWithin(device_, limits);
    fd_ = std::move(claimed.fd);
    data_ = claimed.data;
}

void PrinterPort::clearBit(int bit) {
    write(data_ & ~(1U << bit));
}

void PrinterPort::setBit(int bit) {
    write(data_ | (1U << bit));
}

void PrinterPort::write(unsigned data) {
    auto byte = static_cast<std::uint8_t>(data);
    if (::ioctl(fd_.get(), PPWDATA, &byte) != 0) {
        const int error = errno;
        const bool vanished = error == ENODEV || error == ENXIO || error == EIO;
        refuse(device_, (vanished ? "the printer port has vanished: " : "cannot write: ") + reason(error));
    }
    data_ = byte;
}

} // namespace linux_ports
