#include "platform/linux/direct_port.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"
#include "runtime/text.h"

#include <cerrno>

namespace linux_ports {

namespace {

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

DirectPort::DirectPort(std::uint16_t address, IoPorts& ports) : address_(address), ports_(ports) {
    if (const int error = ports_.allow(address)) {
        throw runtime::ObjectError(whyRefused(runtime::hexText(address, "0x"), error));
    }
    data_ = ports_.read(address);
}

void DirectPort::write(unsigned data) {
    ports_.write(address_, static_cast<std::uint8_t>(data));
    data_ = data;
}

} // namespace linux_ports
