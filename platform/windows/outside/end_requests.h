#pragma once

#include "platform/windows/mailbox.h"

#include <functional>

namespace windows_ports {

/// Ctrl+C in the console that the program was started from, and the end of that console. Only one object at a
/// time. The end of the user's session comes through the toolkit's window.
class EndRequests {
  public:
    EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;
    /// Destroy it late: it releases a console that waits for the program's end.
    ~EndRequests();

    /// `end` is called through the message loop, also for a request that came before this call.
    void deliver(std::function<void()> end);

  private:
    static BOOL WINAPI consoleEvent(DWORD event) noexcept;

    Mailbox mailbox_;
};

} // namespace windows_ports
