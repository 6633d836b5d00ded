#pragma once

#include <functional>
#include <string>

namespace platform {

/// Window messages to and from a station program. A window is a handle above 0.
class StationMessages {
  public:
    using Receiver = std::function<void(long message, long wParam, long lParam)>;

    virtual ~StationMessages() = default;
    /// The system's identifier for the message of this name.
    virtual long registerMessage(const std::string& name) = 0;
    /// The window with exactly this title, as last known, without waiting; 0 if there is none.
    virtual long findWindow(const std::string& title) = 0;
    virtual void post(long window, long message, long wParam, long lParam) = 0;
    /// Hooks our window: `receiver` gets every message first, then the previous procedure. Returns the
    /// previous procedure, never 0. `window` is our own window, see ownWindow.
    virtual long hook(long window, Receiver receiver) = 0;
    virtual void unhook(long window, long previousProcedure) = 0;
    /// The window handle for messages to the form of this name.
    virtual long ownWindow(const std::string& form) = 0;
};

} // namespace platform
