#pragma once

#include "platform/linux/io_ports.h"
#include "platform/printer_port.h"

namespace linux_ports {

/// A printer port, or a card that looks like one, without a driver: the program writes its data register
/// itself. Belongs to the thread that made it.
class DirectPort : public platform::PrinterPort {
  public:
    static constexpr int kLowest = 0x100, kHighest = 0xfff0; // below are the mainboard's own

    /// `address` is that of the data register, kLowest to kHighest; 0x378 is the usual first port. The lines
    /// keep the levels they have. Throws runtime::ObjectError, naming the port and what to do about it.
    explicit DirectPort(int address, IoPorts& ports = machineIoPorts());

    void clearBit(int bit) override { write(data_ & ~(1U << bit)); }
    void setBit(int bit) override { write(data_ | (1U << bit)); }

    int address() const { return address_; }

  private:
    void write(unsigned data);

    int address_;
    IoPorts& ports_;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace linux_ports
