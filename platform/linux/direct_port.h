#pragma once

#include "platform/linux/io_ports.h"
#include "platform/printer_port.h"

namespace linux_ports {

/// A printer port, or a card that looks like one, without a driver: the program writes its data register
/// itself. Belongs to the thread that made it.
class DirectPort : public platform::PrinterPort {
  public:
    /// `address` is that of the data register; 0x378 is the usual first port. Which ones the user may name is
    /// decided where the setting is read. The lines keep the levels they have. Throws runtime::ObjectError,
    /// naming the port and what to do about it.
    explicit DirectPort(std::uint16_t address, IoPorts& ports = machineIoPorts());

    void clearBit(int bit) override { write(data_ & ~(1U << bit)); }
    void setBit(int bit) override { write(data_ | (1U << bit)); }
    void endPattern() override {}
    bool taken(int /*mask*/) override { return true; }

  private:
    void write(unsigned data);

    std::uint16_t address_;
    IoPorts& ports_;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace linux_ports
