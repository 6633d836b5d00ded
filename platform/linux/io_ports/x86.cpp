#include "platform/linux/io_ports.h"

#include <cerrno>
#include <sys/io.h>

namespace linux_ports {

namespace {

class X86Ports : public IoPorts {
  public:
    int allow(int port) override { return ::ioperm(static_cast<unsigned long>(port), 1, 1) == 0 ? 0 : errno; }
    std::uint8_t read(int port) override { return ::inb(static_cast<unsigned short>(port)); }
    void write(int port, std::uint8_t value) override { ::outb(value, static_cast<unsigned short>(port)); }
};

} // namespace

IoPorts& machineIoPorts() {
    static X86Ports ports;
    return ports;
}

} // namespace linux_ports
