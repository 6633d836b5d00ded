#pragma once

#include "platform/linux/io_ports.h"
#include "platform/printer_port.h"

namespace linux_ports {

/// A printer port, or a compatible card, without a driver: the program writes the data register itself. Only
/// the thread that creates the object may use it.
class DirectPort : public platform::PrinterPort {
  public:
    /// `address` is the address of the data register; 0x378 for a PC's first port. config/hardware_settings
    /// checks the allowed range. The lines keep their levels. Throws runtime::ObjectError, naming the port
    /// and the remedy.
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
