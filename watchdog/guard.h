#pragma once

#include "watchdog/messages.h"
#include "watchdog/port.h"
#include "watchdog/usb_board.h"

#include <ctime>

namespace watchdog {

/// Guards the outputs until the controller ends, switches them off, and ends too.
class Guard {
  public:
    [[noreturn]] void run();

  private:
    using Milliseconds = long long; // of the monotonic clock

    static Milliseconds now();
    static bool controllerEnded();
    void awaitNews() const;
    /// False at the end of the connection.
    bool readRequests();
    bool carryOut(const Request& request, int descriptor);
    static void reply(const Request& request, int error);
    /// Whether the controller has been silent for too long.
    void lookAtSilence();
    void switchOff();
    [[noreturn]] void end();

    Port port_;
    UsbBoard board_;
    bool engineRuns_ = false;
    bool hung_ = false;
    Milliseconds lastBeat_ = 0;
};

} // namespace watchdog
