#pragma once

#include "app/controller.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace app {

/// The options of the command line.
struct Options {
    std::filesystem::path directory; // holds "save.cfg" and "twinstep.ini"; empty: the system's usual one
    /// The given settings of platform::HardwareSettings, by name; each value is valid.
    std::map<std::string, std::string> hardware;
    std::optional<std::filesystem::path> trace;
    bool realtime = false;    // ask for real-time scheduling
    bool fromDesktop = false; // started from the desktop's menu, most likely
};

/// The ports that the window's toolkit implements, the same on every system.
struct ToolkitPorts {
    platform::TcpClients& tcp;
    platform::Dialogs& dialogs;
    platform::Shell& shell;
};

/// The outside of the program on one operating system: devices, clocks, links, and the watchdog that switches
/// the coils off when the program cannot. Each system implements this class in one file,
/// `platform/<system>/outside.cpp`.
class Outside {
  public:
    using Tell = std::function<void(const std::string&)>;

    /// Callbacks from the outside, called from the event loop.
    struct Events {
        std::function<void()> end; // the system, or the user by a signal, asks the program to end
        Tell fail;                 // the outputs were switched off from outside, or are no longer guarded
        Tell stepClock;            // how the system schedules the step clock; only if Options::realtime
    };

    /// Shows a text, in whole lines, to the user who has started the program, before there is a window.
    static void tell(const std::string& text, bool isError);

    /// Locks the folder and opens the devices. Needs neither an event loop nor a display. `notify` is called
    /// with messages for the user, from any thread. Throws runtime::ObjectError or FileError, naming what was
    /// refused. Destroy it before the toolkit's application.
    static std::unique_ptr<Outside> open(const Options& options, const Tell& notify);

    virtual ~Outside() = default;
    /// The folder of "save.cfg"; absolute.
    virtual const std::filesystem::path& folder() const = 0;
    /// The message for the user about a refused device or file at the start; empty if there was none.
    virtual const std::string& notice() const = 0;
    /// Call once, when the event loop exists. The toolkit's ports outlive this object.
    virtual Ports ports(const ToolkitPorts& toolkit) = 0;
    /// Call once, before an engine can run. The events are called as long as this object lives.
    virtual void attend(Events events) = 0;
    /// Reports that the program is alive. Call it about four times a second from the event loop, and at once
    /// when an engine starts or stops.
    virtual void beat(bool engineRuns) = 0;
    /// Writes the rest of the trace. For an end of the program that runs no destructors.
    virtual void closeTrace() = 0;
};

} // namespace app
