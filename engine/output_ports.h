#pragma once

#include "engine/side.h"
#include "form/boxes.h"
#include "form/form1.h"
#include "platform/printer_port.h"
#include "platform/usb_board.h"

namespace engine {

/// What a user must be told when the outputs do not go off.
constexpr const char* kOutputsStillOn =
    "The outputs could NOT be switched off: remove the power of the engines";

/// The two ways to the coils: the printer port, written bit by bit and always, and the K8055 board, written
/// as one byte while chkUsbOn is ticked. A board that does not answer any more is let go, chkUsbOn unticked,
/// and the call throws on: ticking the box looks for it again.
class OutputPorts {
  public:
    OutputPorts(form::Form1& form, form::Boxes& boxes, platform::PrinterPort& port,
                platform::UsbBoard& board);

    /// Writes output `bit` (1 to 8). State 1 sets it, which leaves the coil off; any other state clears it.
    void subBitPorta(form::Int16 stato, form::Int16 bit);
    /// What subBitPorta has written since the last call is one pattern of the printer port.
    void endPattern() { objPorta_.endPattern(); }
    /// Takes the USB value `peso` of engine `mot` (1 = A, 2 = B) and writes both engines' together.
    void subUsbOnOff(form::Int16 peso, form::Int16 mot);
    /// Whether the engine may step: its last pattern is on the printer port, and on the USB board where the
    /// box is ticked.
    bool ready(const Side& side);
    /// Throws when the board has failed since the last write.
    void checkUsb();
    void chkUsbOn_Click();
    /// All coils off, all lamps dark. The phase indexes stay, so the next step resumes the sequence.
    void cmdOff_Click();
    /// The coils of one engine off, its lamps dark, as cmdOff does it for both.
    void rest(const Side& side);
    /// Coils off at any price: each path is tried, whatever the other does. For use after an error. False
    /// when a path failed, so that coils may still be on.
    bool offWithoutFail() noexcept;
    /// Sets all eight bits of the printer port: every coil off.
    void writePortOff();

  private:
    void darkenLamps();
    void writeOff(int firstOutput);
    void openUsb();
    void closeUsb();
    void showUsbOff();
    /// Runs a call of the open board, and lets the board go when it fails.
    template <class Call>
    auto onBoard(const Call& call) -> decltype(call());
    void letBoardGo();

    form::Form1& form_;
    form::Boxes& boxes_;
    platform::PrinterPort& objPorta_;
    platform::UsbBoard& board_;
    bool lost_ = false; // the board was let go with nobody knowing what its outputs hold, and not told yet
};

} // namespace engine
