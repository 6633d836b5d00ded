#include "platform/linux/device_search.h"

#include "platform/linux/file_descriptor.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/gpio.h>
#include <optional>
#include <sys/ioctl.h>

namespace linux_ports {

namespace {

namespace fs = std::filesystem;

constexpr const char* kById = "/dev/serial/by-id";

/// The names in a folder that begin with one of these; sorted, and empty if there is no folder.
std::vector<std::string> namesIn(const char* folder, std::initializer_list<const char*> beginnings) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        if (std::ranges::any_of(beginnings, [&](const char* each) { return name.starts_with(each); }))
            names.push_back(name);
    }
    std::ranges::sort(names);
    return names;
}

/// "Arduino Uno"; empty for a device that is not on USB.
std::string usbNameOf(const std::string& tty) {
    std::error_code error;
    fs::path folder = fs::canonical("/sys/class/tty/" + tty + "/device", error);
    // The device is a part of an interface of the USB device.
    for (int up = 0; up < 3 && !error; ++up, folder = folder.parent_path()) {
        std::ifstream file(folder / "product");
        std::string name;
        if (std::getline(file, name)) return name;
    }
    return {};
}

/// A name that stays when the device is plugged in again; the plain one if there is no other.
std::string lastingName(const std::string& tty) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(kById, error)) {
        if (fs::read_symlink(entry.path(), error).filename() == tty) return entry.path();
    }
    return "/dev/" + tty;
}

/// Opened for questions alone, which need no right to write.
FileDescriptor openChip(const std::string& chip) {
    return FileDescriptor(::open(("/dev/" + chip).c_str(), O_RDONLY | O_CLOEXEC));
}

/// A name of the kernel, which fills its array.
template <std::size_t kSize>
std::string textOf(const char (&name)[kSize]) {
    return {name, ::strnlen(name, kSize)};
}

std::optional<gpiochip_info> infoOf(const FileDescriptor& chip) {
    gpiochip_info info{};
    if (!chip || ::ioctl(chip.get(), GPIO_GET_CHIPINFO_IOCTL, &info) != 0) return std::nullopt;
    return info;
}

/// The pull of a line until a program uses it, as the data sheets of the Raspberry Pi's chips have it.
std::optional<bool> levelAtBoot(const std::string& label, std::uint32_t line) {
    constexpr std::uint32_t kLastPulledUp = 8, kLastOfHeader = 27;
    const bool known = label.starts_with("pinctrl-bcm2") || label.starts_with("pinctrl-rp1");
    if (!known || line > kLastOfHeader) return std::nullopt;
    return line <= kLastPulledUp;
}

} // namespace

std::vector<platform::OutputDevice> findOutputDevices() {
    std::vector<platform::OutputDevice> devices;
    for (const std::string& port : namesIn("/dev", {"parport"}))
        devices.push_back({"/dev/" + port, "/dev/" + port});
    for (const std::string& tty : namesIn("/sys/class/tty", {"ttyACM", "ttyUSB"})) {
        const std::string name = usbNameOf(tty);
        devices.push_back(
            {"firmata:" + lastingName(tty), (name.empty() ? "Arduino" : name) + " (" + tty + ")"});
    }
    for (const std::string& chip : namesIn("/dev", {"gpiochip"})) {
        const auto info = infoOf(openChip(chip));
        std::string name = "Pins (" + chip + ")";
        if (info) name.insert(4, " of " + textOf(info->label));
        devices.push_back({"gpio:" + chip, name});
    }
    return devices;
}

std::vector<platform::GpioLine> gpioLinesOf(const std::string& chip) {
    const FileDescriptor fd = openChip(chip);
    const auto info = infoOf(fd);
    if (!info) return {};
    std::vector<platform::GpioLine> lines(info->lines);
    for (std::uint32_t number = 0; number < info->lines; ++number) {
        gpio_v2_line_info line{};
        line.offset = number;
        if (::ioctl(fd.get(), GPIO_V2_GET_LINEINFO_IOCTL, &line) != 0) continue;
        platform::GpioLine& found = lines.at(number);
        found.name = textOf(line.name);
        if ((line.flags & GPIO_V2_LINE_FLAG_USED) != 0) {
            const std::string user = textOf(line.consumer);
            found.user = user.empty() ? "the kernel" : user;
        }
        found.atBoot = levelAtBoot(textOf(info->label), number);
    }
    return lines;
}

} // namespace linux_ports
