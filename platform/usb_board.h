#pragma once

#include <string>

namespace platform {

/// A Velleman K8055 board, as far as its eight digital outputs go. It takes some milliseconds for each byte,
/// so a write only hands the byte over and never waits. Every call but refusal throws runtime::ObjectError
/// when the driver refuses or the board does not answer any more.
class UsbBoard {
  public:
    virtual ~UsbBoard() = default;
    /// Address 0 is the card that was chosen, whatever its own address; others are meant as they are. Returns
    /// the address of the card that answered, 0 to 3, or -1 when none does.
    virtual int openDevice(int address) = 0;
    /// In words for the user, why the last openDevice answered -1 although the card is there; else empty.
    virtual std::string refusal() const = 0;
    /// `outputs` holds the eight outputs in bits 0 to 7; they replace a byte that the board has not been sent
    /// yet. Does nothing while no card is open.
    virtual void writeAllDigital(int outputs) = 0;
    /// Whether the outputs in `mask` are on the board as last written; true while no card is open.
    virtual bool taken(int mask) = 0;
    /// Waits a moment, 0.2 s at most, for the outputs to go off; throws when they have not by then.
    virtual void closeDevice() = 0;
};

} // namespace platform
