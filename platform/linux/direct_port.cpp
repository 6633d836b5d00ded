#include "platform/linux/direct_port.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"

#include <array>
#include <cerrno>
#include <charconv>

namespace linux_ports {

namespace {

constexpr int kHexadecimal = 16;

std::string hexText(int number) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, kHexadecimal).ptr;
    return "0x" + std::string(digits.data(), end);
}

std::string whyRefused(const std::string& port, int error) {
    switch (error) {
    case EPERM:
    case EACCES:
        return "no permission for port " + port + ": direct access needs root or CAP_SYS_RAWIO; with the " +
               "driver ppdev use --port /dev/parport0";
    case ENOSYS:
        return "port " + port +
               ": this computer has no such ports, or its kernel lets nobody use them; with the " +
               "driver ppdev use --port /dev/parport0";
    default:
        return "port " + port + ": " + reason(error);
    }
}

} // namespace

DirectPort::DirectPort(int address, IoPorts& ports) : address_(address), ports_(ports) {
    if (address < kLowest || address > kHighest) {
        throw runtime::ObjectError("port " + hexText(address) + ": a printer port has an address from " +
                                   hexText(kLowest) + " to " + hexText(kHighest));
    }
    if (const int error = ports_.allow(address)) {
        throw runtime::ObjectError(whyRefused(hexText(address), error));
    }
    data_ = ports_.read(address);
}

void DirectPort::write(unsigned data) {
    ports_.write(address_, static_cast<std::uint8_t>(data));
    data_ = data;
}

} // namespace linux_ports
