#pragma once

#include <string>

namespace platform {

/// The eight digital outputs of a Velleman K8055 board. The board needs some milliseconds for each byte, so a
/// write only stores the byte and never waits. Every call but refusal throws runtime::ObjectError if the
/// driver refuses or the board does not answer any more.
class UsbBoard {
  public:
    virtual ~UsbBoard() = default;
    /// Address 0 stands for the chosen card, whatever its own address; any other address is the card's own.
    /// Returns the address of the card that answers, 0 to 3, or -1 if no card answers.
    virtual int openDevice(int address) = 0;
    /// The reason for the user why the last openDevice returned -1 although the card is there; else empty.
    virtual std::string refusal() const = 0;
    /// `outputs` holds the eight outputs in bits 0 to 7. It replaces a byte that has not been sent yet. Does
    /// nothing while no card is open.
    virtual void writeAllDigital(int outputs) = 0;
    /// Whether the board has the last written values of the outputs in `mask`; true if no card is open.
    virtual bool taken(int mask) = 0;
    /// Switches the outputs off and waits for this, 0.2 s at most; throws if they are not off by then.
    virtual void closeDevice() = 0;
};

} // namespace platform
