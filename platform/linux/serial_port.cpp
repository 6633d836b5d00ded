#include "platform/linux/serial_port.h"

#include "runtime/errors.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <thread>

namespace linux_ports {

namespace {

struct Speed {
    int baud;
    speed_t code;
};
constexpr std::array kSpeeds = {Speed{9600, B9600},      Speed{19200, B19200},   Speed{38400, B38400},
                                Speed{57600, B57600},    Speed{115200, B115200}, Speed{230400, B230400},
                                Speed{460800, B460800},  Speed{500000, B500000}, Speed{921600, B921600},
                                Speed{1000000, B1000000}};

[[noreturn]] void refuse(const std::string& device, const std::string& words) {
    throw runtime::ObjectError(device + ": " + words);
}

std::string whyNotOpened(const std::string& device, int error) {
    switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return "there is no such device: plug the board in";
    case EACCES:
    case EPERM:
        return "no permission: " + groupRemedy(device);
    case EBUSY:
        return "in use by another program";
    default:
        return reason(error);
    }
}

speed_t speedCode(const std::string& device, int baud) {
    for (const Speed& speed : kSpeeds) {
        if (speed.baud == baud) return speed.code;
    }
    refuse(device, "serial lines have no speed of " + std::to_string(baud) + " baud");
}

void setUp(int fd, const std::string& device, speed_t speed) {
    termios settings{};
    if (::tcgetattr(fd, &settings) != 0) refuse(device, "this is not a serial device");
    ::cfmakeraw(&settings);
    // Without HUPCL the board is not reset at the end: its outputs stay off, also where a reset would switch
    // the coils on.
    settings.c_cflag &= ~static_cast<tcflag_t>(HUPCL | CRTSCTS | CSTOPB);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cc[VMIN] = 1; // so that a read of 0 bytes is a hang-up
    settings.c_cc[VTIME] = 0;
    ::cfsetispeed(&settings, speed);
    ::cfsetospeed(&settings, speed);
    if (::tcsetattr(fd, TCSANOW, &settings) != 0) refuse(device, "cannot be set up: " + reason(errno));
    ::tcflush(fd, TCIOFLUSH);
}

[[noreturn]] void gone() {
    throw runtime::ObjectError("it was unplugged. Plug it in again");
}

} // namespace

std::string groupRemedy(const std::string& device) {
    struct stat status {};
    const group* owner = ::stat(device.c_str(), &status) == 0 ? ::getgrgid(status.st_gid) : nullptr;
    if (!owner || status.st_gid == 0) return "only root may use it";
    const std::string name = owner->gr_name;
    return "add yourself to the group " + name + " (sudo adduser $USER " + name + ") and log in again";
}

SerialPort::SerialPort(const std::string& device, int baud)
    : fd_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (!fd_) refuse(device, whyNotOpened(device, errno));
    if (::isatty(fd_.get()) == 0) refuse(device, "this is not a serial device");
    // Root gets past TIOCEXCL; many programs for serial devices also lock.
    if (::flock(fd_.get(), LOCK_EX | LOCK_NB) != 0 || ::ioctl(fd_.get(), TIOCEXCL) != 0)
        refuse(device, "in use by another program");
    setUp(fd_.get(), device, speedCode(device, baud));
    wake_ = FileDescriptor(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    if (!wake_) refuse(device, reason(errno));
}

SerialPort::~SerialPort() {
    // The last close waits, for up to 30 s, until a stalled board has taken what was written. Others may have
    // the device meanwhile.
    ::flock(fd_.get(), LOCK_UN);
    ::ioctl(fd_.get(), TIOCNXCL);
    try {
        std::thread([fd = std::move(fd_)] {}).detach();
    } catch (const std::system_error&) { // then it waits here
    }
}

std::size_t SerialPort::write(std::span<const std::uint8_t> bytes) {
    const ssize_t size = ::write(fd_.get(), bytes.data(), bytes.size());
    if (size >= 0) return static_cast<std::size_t>(size);
    if (errno == EAGAIN || errno == EINTR) return 0;
    gone();
}

std::size_t SerialPort::read(std::span<std::uint8_t> buffer, std::chrono::nanoseconds longest) {
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(longest);
    const timespec timeout{.tv_sec = whole.count(), .tv_nsec = (longest - whole).count()};
    std::array<pollfd, 2> sources{pollfd{.fd = fd_.get(), .events = POLLIN, .revents = 0},
                                  pollfd{.fd = wake_.get(), .events = POLLIN, .revents = 0}};
    if (::ppoll(sources.data(), sources.size(), &timeout, nullptr) <= 0) return 0;
    std::uint64_t count = 0;
    if (sources[1].revents != 0) [[maybe_unused]]
        const ssize_t taken = ::read(wake_.get(), &count, sizeof count);
    if (sources[0].revents == 0) return 0;
    const ssize_t size = ::read(fd_.get(), buffer.data(), buffer.size());
    if (size > 0) return static_cast<std::size_t>(size);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return 0;
    gone();
}

void SerialPort::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wake_.get(), &one, sizeof one);
}

} // namespace linux_ports
