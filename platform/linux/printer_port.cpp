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

/// Throws an error: the device's name, then the text.
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

/// The names of the drivers registered with the device's port: "lp, ppdev0".
std::string driversOf(const std::string& device, const fs::path& drivers) {
    struct stat status {};
    if (::stat(device.c_str(), &status) != 0) return {};
    // The minor number of a ppdev device is its port's.
    const fs::path folder = drivers / ("parport" + std::to_string(minor(status.st_rdev))) / "devices";
    std::set<std::string> names; // the folder also has a file with the active driver's name
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
    // The kernel also returns "no such device" when another driver has the port.
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
    // Exclusive, so that the claim fails at once if another driver has registered, instead of waiting for it.
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

/// Claims the port on a separate thread, because a claim may take long: ppdev has a single lock, which a
/// program waiting for another port holds, and the first claim may load a module. If the claim succeeds too
/// late, the thread releases the port.
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
