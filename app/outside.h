#pragma once

#include "app/controller.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace app {

/// What the user asks for on the command line.
struct Options {
    std::filesystem::path directory = "."; // holds "save.cfg" and "twinstep.ini"
    /// Those of platform::HardwareSettings that were given, by name; each is valid.
    std::map<std::string, std::string> hardware;
    std::optional<std::filesystem::path> trace;
    bool realtime = false;    // ask for real-time scheduling
    bool fromDesktop = false; // started from the desktop's menu, most likely
};

/// The ports that the window's toolkit fulfils, alike on every system.
struct ToolkitPorts {
    platform::TcpClients& tcp;
    platform::Dialogs& dialogs;
    platform::Shell& shell;
    platform::Sound& sound;
};

/// What one system has outside the program: its devices, clocks and links, and who switches the coils off
/// when the program cannot. Each system fulfils it in one file, `platform/<system>/outside.cpp`.
class Outside {
  public:
    using Tell = std::function<void(const std::string&)>;

    /// What the program hears of its outside, from the event loop.
    struct Events {
        std::function<void()> end; // the system, or the user by a signal, asks the program to end
        Tell fail;                 // the outputs were switched off from outside, or are no longer guarded
        Tell stepClock;            // how the system schedules the step clock; only where that was asked for
    };

    /// Holds the folder and opens the devices. There need be neither an event loop nor a display yet.
    /// `notify` takes what the user must know, from any thread. Throws runtime::ObjectError or FileError,
    /// naming what was refused. Destroy it before the toolkit's application.
    static std::unique_ptr<Outside> open(const Options& options, Tell notify);

    virtual ~Outside() = default;
    /// Of "save.cfg"; absolute.
    virtual const std::filesystem::path& folder() const = 0;
    /// What the user must know about the start: a device or a file that was refused. Empty when all is well.
    virtual const std::string& notice() const = 0;
    /// Once, when the event loop stands. The toolkit's ports outlive this object.
    virtual Ports ports(const ToolkitPorts& toolkit) = 0;
    /// Once, before an engine can run. The events are called for as long as this object lives.
    virtual void attend(Events events) = 0;
    /// The program is alive. Call it some four times a second from the event loop, and at once when an engine
    /// starts or stops.
    virtual void beat(bool engineRuns) = 0;
    /// The record of the outputs is written to its end. For an end that destroys nothing.
    virtual void closeTrace() = 0;
};

} // namespace app
