#pragma once

#include "watchdog/windows/byte_device.h"
#include "watchdog/windows/libraries.h"
#include "watchdog/windows/shared.h"

namespace watchdog {

/// Switches the outputs off when the controller ends or hangs.
class Guard {
  public:
    Guard(const Inherited& inherited, Shared& shared) : inherited_(inherited), shared_(shared) {}

    /// Until the controller has ended. Ends the process.
    [[noreturn]] void run();

  private:
    void obey();
    DWORD carryOut(Request& request);
    DWORD guardBoard(const Request& request);
    void takeOff(const Request& request);
    void forgetPort();
    void forgetBoard();
    void lookAtSilence();
    [[noreturn]] void end();

    /// All of what is guarded goes off. Returns false when a device does not take it.
    bool switchOff();

    Inherited inherited_;
    Shared& shared_;
    bool hung_ = false;

    PortLibrary ports_;
    unsigned address_ = 0; // 0: none
    ByteDevice serial_;
    std::uint8_t off_[kMostBytes] = {}; // of the port
    DWORD offSize_ = 0;
    ByteDevice board_;
    BoardLibrary boards_;
    long card_ = -1; // through the library; -1: none
};

} // namespace watchdog
