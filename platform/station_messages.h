#pragma once

#include <functional>
#include <string>

namespace platform {

/// Window messages to and from a station program. A window is a handle above 0.
class StationMessages {
  public:
    using Receiver = std::function<void(long message, long wParam, long lParam)>;

    virtual ~StationMessages() = default;
    /// The identifier that the system gives to a message of this name.
    virtual long registerMessage(const std::string& name) = 0;
    /// The window with exactly this title, from the last known state and without waiting; 0 when there is
    /// none.
    virtual long findWindow(const std::string& title) = 0;
    virtual void post(long window, long message, long wParam, long lParam) = 0;
    /// Puts `receiver` in front of our window's procedure, which afterwards gets every message as before.
    /// Returns the procedure that was in place, never 0. `window` is our own window, see ownWindow.
    virtual long hook(long window, Receiver receiver) = 0;
    virtual void unhook(long window, long previousProcedure) = 0;
    /// The handle under which messages reach the form of this name.
    virtual long ownWindow(const std::string& form) = 0;
};

} // namespace platform
