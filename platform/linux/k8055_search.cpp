#include "platform/hid/k8055_search.h"

#include "platform/linux/file_descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>

namespace hid_ports {

namespace {

namespace fs = std::filesystem;

constexpr const char* kVendorText = "10cf";
constexpr const char* kFirstProductsText = "550";
constexpr const char* kUsbDevices = "/sys/bus/usb/devices";

std::string productText(int card) {
    return kFirstProductsText + std::to_string(card);
}

std::string wordIn(const fs::path& file) {
    std::ifstream stream(file);
    std::string word;
    stream >> word;
    return word;
}

/// The driver bound to an interface of this device; empty if there is none.
std::string driverOf(const std::string& device) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(kUsbDevices, ignored)) {
        if (!entry.path().filename().string().starts_with(device + ":")) continue;
        const fs::path driver = fs::read_symlink(entry.path() / "driver", ignored);
        if (!driver.empty()) return driver.filename();
    }
    return {};
}

} // namespace

std::string whyNotOpened(const std::string& path) {
    const linux_ports::FileDescriptor fd(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    const int error = errno;
    const std::string words = "The K8055 board is there, but " + path + " cannot be opened: ";
    if (fd) return words + "it is no device that takes reports";
    if (error != EACCES && error != EPERM) return words + linux_ports::reason(error);
    return words +
           "no permission. The udev rule that comes with the program gives it; install it and plug the " +
           "board in again, or for now: sudo chmod a+rw " + path;
}

std::string whyNoNode(int card) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(kUsbDevices, ignored)) {
        if (wordIn(entry.path() / "idVendor") != kVendorText ||
            wordIn(entry.path() / "idProduct") != productText(card))
            continue;
        const std::string driver = driverOf(entry.path().filename());
        std::string words = "The K8055 board is on USB, but the kernel has made no hidraw device for it: ";
        words += driver.empty() ? "usbhid passes such boards over" : "the driver " + driver + " has it";
        words += ". The Debian package of this program sees to that; without it, write into "
                 "/etc/modprobe.d/twinstep.conf:\noptions usbhid quirks=0x10cf:0x";
        words += productText(card) + ":0x40000000";
        if (!driver.empty()) words += "\nalias usb:v10CFp" + productText(card) + "d* usbhid";
        words += "\nIn both cases then run \"sudo update-initramfs -u\", where there is such a program, and "
                 "restart the computer";
        return words;
    }
    return {};
}

} // namespace hid_ports
