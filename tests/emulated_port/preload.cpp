// A printer port of the kernel's ppdev driver, and a GPIO chip of its character device, for programs started
// with this library in LD_PRELOAD: /dev/parport0 and /dev/gpiochip0 stand for the file that EMULATED_PORT
// names; a request of eight lines has the file's byte. All state is in that file and in the system's locks on
// it, so that, as with the real drivers, a descriptor works in every process that it is handed to, and its
// claim lasts until the last of them has closed it.

#include "tests/emulated_port/state.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/gpio.h>
#include <linux/ppdev.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* kPort = "/dev/parport0";
constexpr const char* kChip = "/dev/gpiochip0";
constexpr unsigned kLines = 54;
constexpr unsigned kTaken = 10;       // by another driver
constexpr unsigned kLastPulledUp = 8; // as on a Raspberry Pi
constexpr unsigned kStalledSeconds = 30;

template <class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

const char* fileBehind(const char* path) {
    const char* file = std::getenv("EMULATED_PORT");
    return file && (std::strcmp(path, kPort) == 0 || std::strcmp(path, kChip) == 0) ? file : path;
}

bool isPort(int fd) {
    const char* file = std::getenv("EMULATED_PORT");
    struct stat wanted {
    }, found{};
    return file && ::fstat(fd, &found) == 0 && ::stat(file, &wanted) == 0 && found.st_dev == wanted.st_dev &&
           found.st_ino == wanted.st_ino;
}

std::int64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

int fail(int error) {
    errno = error;
    return -1;
}

/// The kernel answers so where another process has claimed the port for itself.
int claim(int fd) {
    return ::flock(fd, LOCK_EX | LOCK_NB) == 0 ? 0 : fail(ENXIO);
}

int writeData(int fd, std::uint8_t data) {
    EmulatedPortState state;
    if (::pread(fd, &state, sizeof state, 0) < 0) return -1;
    if (state.data != data) state.changed = now();
    state.data = data;
    state.writer = ::getpid();
    ++state.writes;
    return ::pwrite(fd, &state, sizeof state, 0) == sizeof state ? 0 : fail(EIO);
}

int readData(int fd, std::uint8_t& data) {
    EmulatedPortState state;
    if (::pread(fd, &state, sizeof state, 0) < 0) return -1;
    data = state.data;
    return 0;
}

int requestLines(gpio_v2_line_request& request) {
    for (unsigned index = 0; index < request.num_lines; ++index) {
        if (request.offsets[index] >= kLines) return fail(EINVAL);
        if (request.offsets[index] == kTaken) return fail(EBUSY);
    }
    const auto open = real<int(const char*, int, unsigned)>("open");
    const int fd = open(std::getenv("EMULATED_PORT"), O_RDWR | O_CLOEXEC, 0);
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return fail(EBUSY);
    }
    request.fd = fd;
    EmulatedPortState state;
    [[maybe_unused]] const ssize_t size = ::pread(fd, &state, sizeof state, 0);
    state.areLines = true;
    state.pull = 0;
    for (unsigned index = 0; index < request.num_lines; ++index)
        state.pull |= request.offsets[index] <= kLastPulledUp ? 1U << index : 0;
    [[maybe_unused]] const ssize_t written = ::pwrite(fd, &state, sizeof state, 0);
    return writeData(fd, static_cast<std::uint8_t>(request.config.attrs[0].attr.values));
}

int describeLine(gpio_v2_line_info& line) {
    if (line.offset >= kLines) return fail(EINVAL);
    std::snprintf(line.name, sizeof line.name, "GPIO%u", line.offset);
    if (line.offset != kTaken) return 0;
    std::strcpy(line.consumer, "spi0 CS0");
    line.flags = GPIO_V2_LINE_FLAG_USED;
    return 0;
}

int describeChip(gpiochip_info& chip) {
    std::strcpy(chip.name, "gpiochip0");
    std::strcpy(chip.label, "pinctrl-bcm2835");
    chip.lines = kLines;
    return 0;
}

int setLines(int fd, const gpio_v2_line_values& values) {
    std::uint8_t data = 0;
    if (readData(fd, data) != 0) return -1;
    return writeData(fd, static_cast<std::uint8_t>((data & ~values.mask) | (values.bits & values.mask)));
}

int answer(int fd, unsigned long request, void* argument) {
    switch (request) {
    case GPIO_GET_CHIPINFO_IOCTL:
        return describeChip(*static_cast<gpiochip_info*>(argument));
    case GPIO_V2_GET_LINEINFO_IOCTL:
        return describeLine(*static_cast<gpio_v2_line_info*>(argument));
    case GPIO_V2_GET_LINE_IOCTL:
        return requestLines(*static_cast<gpio_v2_line_request*>(argument));
    case GPIO_V2_LINE_SET_VALUES_IOCTL:
        return setLines(fd, *static_cast<gpio_v2_line_values*>(argument));
    case GPIO_V2_LINE_GET_VALUES_IOCTL:
        return 0;
    case PPCLAIM:
        return claim(fd);
    case PPRELEASE:
        return ::flock(fd, LOCK_UN);
    case PPWDATA:
        return writeData(fd, *static_cast<const std::uint8_t*>(argument));
    case PPRDATA:
        return readData(fd, *static_cast<std::uint8_t*>(argument));
    default: // PPEXCL, PPDATADIR
        return 0;
    }
}

bool isKnown(unsigned long request) {
    return request == PPEXCL || request == PPCLAIM || request == PPRELEASE || request == PPDATADIR ||
           request == PPWDATA || request == PPRDATA || request == GPIO_GET_CHIPINFO_IOCTL ||
           request == GPIO_V2_GET_LINEINFO_IOCTL || request == GPIO_V2_GET_LINE_IOCTL ||
           request == GPIO_V2_LINE_SET_VALUES_IOCTL || request == GPIO_V2_LINE_GET_VALUES_IOCTL;
}

} // namespace

extern "C" {

int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    if (isKnown(request) && isPort(fd)) return answer(fd, request, argument);
    const auto next = real<int(int, unsigned long, void*)>("ioctl");
    return next(fd, request, argument);
}

int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const unsigned mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, unsigned) : 0;
    va_end(rest);
    const auto next = real<int(const char*, int, unsigned)>("open");
    return next(fileBehind(path), flags, mode);
}

/// Where STALLED_BOARD is set, serial devices wait at their close, as the kernel's drivers do for a board
/// that does not read.
int close(int fd) {
    struct stat found {};
    if (std::getenv("STALLED_BOARD") && ::fstat(fd, &found) == 0 && S_ISCHR(found.st_mode) && ::isatty(fd))
        ::sleep(kStalledSeconds);
    return real<int(int)>("close")(fd);
}

int stat(const char* path, struct stat* result) noexcept {
    const auto next = real<int(const char*, struct stat*)>("stat");
    return next(fileBehind(path), result);
}

} // extern "C"
