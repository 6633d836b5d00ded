#include "platform/linux/gpio_pins.h"

#include "platform/linux/device_search.h"
#include "platform/linux/serial_port.h"
#include "runtime/errors.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/gpio.h>
#include <sys/ioctl.h>

namespace linux_ports {

namespace {

constexpr char kConsumer[] = "twinstep"; // the kernel shows it as the lines' user
constexpr std::uint64_t kAll = 255;

[[noreturn]] void refuse(const std::string& chip, const std::string& words) {
    throw runtime::ObjectError(chip + ": " + words);
}

std::string whyNotOpened(const std::string& device, int error) {
    switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return "this computer has no such GPIO chip";
    case EACCES:
    case EPERM:
        return "no permission: " + groupRemedy(device);
    default:
        return reason(error);
    }
}

/// `lines` as the chip has them.
std::string whyNotRequested(int error, const std::vector<platform::GpioLine>& all,
                            const std::array<int, 8>& lines) {
    std::string words;
    for (const int line : lines) {
        const auto index = static_cast<std::size_t>(line);
        if (index >= all.size()) return "it has no line " + std::to_string(line);
        if (all[index].user.empty()) continue;
        words += (words.empty() ? "" : ", ") + std::string("line ") + std::to_string(line) +
                 " is taken by \"" + all[index].user + "\"";
    }
    return words.empty() ? "its lines cannot be had: " + reason(error) : words;
}

} // namespace

GpioPins::GpioPins(std::string chip, const std::array<int, 8>& lines, int off)
    : chip_(std::move(chip)), levels_(static_cast<unsigned>(off)) {
    const std::string device = "/dev/" + chip_;
    const FileDescriptor fd(::open(device.c_str(), O_RDWR | O_CLOEXEC));
    if (!fd) refuse(chip_, whyNotOpened(device, errno));
    gpio_v2_line_request request{};
    std::ranges::copy(lines, request.offsets);
    std::ranges::copy(kConsumer, request.consumer);
    request.num_lines = static_cast<std::uint32_t>(lines.size());
    request.config.flags = GPIO_V2_LINE_FLAG_OUTPUT;
    request.config.num_attrs = 1;
    request.config.attrs[0].attr.id = GPIO_V2_LINE_ATTR_ID_OUTPUT_VALUES;
    request.config.attrs[0].attr.values = levels_;
    request.config.attrs[0].mask = kAll;
    if (::ioctl(fd.get(), GPIO_V2_GET_LINE_IOCTL, &request) != 0) {
        const int error = errno;
        refuse(chip_, error == ENOTTY ? "this is not a GPIO chip"
                                      : whyNotRequested(error, gpioLinesOf(chip_), lines));
    }
    fd_ = FileDescriptor(request.fd);
}

void GpioPins::endPattern() {
    gpio_v2_line_values values{.bits = levels_, .mask = kAll};
    if (::ioctl(fd_.get(), GPIO_V2_LINE_SET_VALUES_IOCTL, &values) != 0)
        refuse(chip_, "cannot set the lines: " + reason(errno));
}

} // namespace linux_ports
