#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "platform/printer_port.h"
#include "platform/usb_board.h"

namespace engine {

/// What a user must be told when the outputs do not go off.
constexpr const char* kOutputsStillOn =
    "The outputs could NOT be switched off: remove the power of the engines";

/// The two ways to the coils: the printer port, written bit by bit and always, and the K8055 board, written
/// as one byte while chkUsbOn is ticked.
class OutputPorts {
  public:
    OutputPorts(form::Form1& form, form::Boxes& boxes, platform::PrinterPort& port,
                platform::UsbBoard& board);

    /// Writes output `bit` (1 to 8). State 1 sets it, which leaves the coil off; any other state clears it.
    void subBitPorta(form::Int16 stato, form::Int16 bit);
    /// Takes the USB value `peso` of engine `mot` (1 = A, 2 = B) and writes both engines' together.
    void subUsbOnOff(form::Int16 peso, form::Int16 mot);
    void chkUsbOn_Click();
    /// All coils off, all lamps dark. The phase indexes stay, so the next step resumes the sequence.
    void cmdOff_Click();
    /// Coils off at any price: each path is tried, whatever the other does. For use after an error. False
    /// when a path failed, so that coils may still be on.
    bool offWithoutFail() noexcept;
    /// Sets all eight bits of the printer port: every coil off.
    void writePortOff();

  private:
    void darkenLamps();
    void openUsb();
    void closeUsb();
    void showUsbOff();

    form::Form1& form_;
    form::Boxes& boxes_;
    platform::PrinterPort& objPorta_;
    platform::UsbBoard& board_;
};

} // namespace engine
