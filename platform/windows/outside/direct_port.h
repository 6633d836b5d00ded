#pragma once

#include "platform/printer_port.h"
#include "platform/windows/outside/library.h"

#include <cstdint>

namespace windows_ports {

/// A printer port, or a compatible card, through the user's own inpoutx64.dll beside the program: Windows
/// lets only drivers reach I/O ports, and this library brings one.
class DirectPort : public platform::PrinterPort {
  public:
    static constexpr const char* kLibrary = "inpoutx64.dll";

    /// `address` is the address of the data register; 0x378 for a PC's first port. The lines keep their
    /// levels. Throws runtime::ObjectError, naming the port and the remedy.
    explicit DirectPort(std::uint16_t address);

    void clearBit(int bit) override { write(data_ & ~(1U << bit)); }
    void setBit(int bit) override { write(data_ | (1U << bit)); }
    void endPattern() override {}
    bool taken(int /*mask*/) override { return true; }

  private:
    void write(unsigned data);

    const std::uint16_t address_;
    Library library_;
    void(__stdcall* out_)(short address, short value) = nullptr;
    unsigned data_ = 0; // the byte on the data lines
};

} // namespace windows_ports
