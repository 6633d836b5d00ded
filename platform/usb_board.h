#pragma once

namespace platform {

/// A Velleman K8055 board, as far as its eight digital outputs go. Every call throws runtime::ObjectError
/// when the driver refuses.
class UsbBoard {
  public:
    virtual ~UsbBoard() = default;
    /// Returns the address of the card that answered, 0 to 3, or -1 when none does.
    virtual int openDevice(int address) = 0;
    /// `outputs` holds the eight outputs in bits 0 to 7. Does nothing while no card is open.
    virtual void writeAllDigital(int outputs) = 0;
    virtual void closeDevice() = 0;
};

} // namespace platform
