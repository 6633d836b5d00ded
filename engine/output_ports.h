#pragma once

#include "engine/side.h"
#include "form/boxes.h"
#include "form/form1.h"
#include "platform/printer_port.h"
#include "platform/usb_board.h"

#include <string>
#include <utility>

namespace engine {

/// The message when the outputs cannot be switched off.
constexpr const char* kOutputsStillOn =
    "The outputs could NOT be switched off: remove the power of the engines";

/// The two ways to the coils: the printer port, written bit by bit and always, and the K8055 board, written
/// as one byte while chkUsbOn is ticked. If the board stops answering, it is closed, chkUsbOn is unticked and
/// the call throws. Ticking chkUsbOn looks for the board again.
class OutputPorts {
  public:
    OutputPorts(form::Form1& form, form::Boxes& boxes, platform::PrinterPort& port,
                platform::UsbBoard& board);

    /// Writes output `bit` (1 to 8). State 1 sets it, which leaves the coil off; any other state clears it.
    void subBitPorta(form::Int16 stato, form::Int16 bit);
    /// Marks the bits that subBitPorta has written since the last call as one complete pattern.
    void endPattern() { objPorta_.endPattern(); }
    /// Stores the USB value `peso` of engine `mot` (1 = A, 2 = B) and writes the values of both engines as
    /// one byte.
    void subUsbOnOff(form::Int16 peso, form::Int16 mot);
    /// Whether the engine may step: the printer port has its last pattern, and so has the USB board if
    /// chkUsbOn is ticked.
    bool ready(const Side& side);
    /// The device that has kept an engine waiting since the last call; empty if none has.
    std::string takeSlowDevice() { return std::exchange(slowDevice_, {}); }
    /// The reason, for the user, why no engine may start yet; empty when the printer port is ready.
    std::string notReady() { return objPorta_.notReady(); }
    /// Throws when the board has failed since the last write.
    void checkUsb();
    void chkUsbOn_Click();
    /// All coils off, all lamps dark. The phase indexes stay, so the next step resumes the sequence.
    void cmdOff_Click();
    /// Like cmdOff, but for one engine: its coils off, its lamps dark.
    void rest(const Side& side);
    /// Switches the coils off after an error: tries the printer port and the USB board, even if one of them
    /// fails. Returns false if one failed, so that coils may still be on.
    bool offWithoutFail() noexcept;
    /// Sets all eight bits of the printer port: every coil off.
    void writePortOff();

  private:
    void darkenLamps();
    void showCoils();
    void writeOff(int firstOutput);
    void openUsb();
    void closeUsb();
    void showUsbOff();
    /// Calls the open board; closes the board if the call fails.
    template <class Call>
    auto onBoard(const Call& call) -> decltype(call());
    void letBoardGo();

    form::Form1& form_;
    form::Boxes& boxes_;
    platform::PrinterPort& objPorta_;
    platform::UsbBoard& board_;
    std::string slowDevice_;
    int portOn_ = 0;    // the outputs of the printer port that energise a coil, a bit each
    int usbOn_ = 0;     // the byte that the board has
    bool lost_ = false; // the board failed, its outputs are unknown, offWithoutFail has not said so
};

} // namespace engine
