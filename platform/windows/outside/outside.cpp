// The program's outside on Windows. This file belongs to the program and not to a library: it chooses the
// adapters, including those of the toolkit.

#include "app/outside.h"

#include "app/version.h"
#include "config/position_slots.h"
#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "platform/devices/chosen_hardware.h"
#include "platform/qt/settings_file.h"
#include "platform/qt/start_folder.h"
#include "platform/trace/traced_outputs.h"
#include "platform/windows/console.h"
#include "platform/windows/dde_links.h"
#include "platform/windows/outside/devices.h"
#include "platform/windows/outside/end_requests.h"
#include "platform/windows/outside/position_file.h"
#include "platform/windows/outside/sound.h"
#include "platform/windows/outside/storage.h"
#include "platform/windows/outside/udp_sockets.h"
#include "platform/windows/outside/work_folder.h"
#include "platform/windows/station_messages.h"
#include "platform/windows/tcp_servers.h"
#include "platform/windows/text.h"
#include "platform/windows/timers.h"

#include <array>
#include <optional>

namespace windows_ports {

namespace {

using platform::HardwareSettings;

/// The beginnings of the names of all files in the program's folder, including temporary files.
constexpr std::array<std::string_view, 5> kOwnFiles = {
    "save.cfg", devices::kSettingsFile, config::kPositionFile, "HiResMem.txt", WorkFolder::kLock};
/// A file of this name beside the program: the settings are beside it too.
constexpr const char* kPortable = "portable";

std::filesystem::path usualFolder() {
    std::error_code error;
    const auto beside = programFolder();
    return std::filesystem::exists(beside / kPortable, error) ? beside : qt_ports::userDataFolder();
}

/// The station programs of this computer.
struct HereLinks {
    explicit HereLinks(platform::Timers& timers) : links(timers) {}
    DdeLinks links;
    StationMessages station;
};

/// The station programs of another computer.
struct BridgeLinks {
    BridgeLinks(platform::TcpClients& tcp, platform::Timers& timers, const HardwareSettings& settings)
        : bridge(tcp, timers, std::string(app::kVersion), devices::bridgeAddress(settings)),
          links(bridge, timers), station(bridge, timers) {
        bridge.stayConnected(true);
    }
    bridge_ports::Connection bridge;
    bridge_ports::DdeLinks links;
    bridge_ports::StationMessages station;
};

/// Clocks and links: what needs the event loop.
struct Connections {
    Connections(platform::TcpClients& tcp, const HardwareSettings& settings, bool throughBridge)
        : udp(settings.n1mmListen) {
        if (throughBridge) {
            bridge.emplace(tcp, timers, settings);
        } else {
            here.emplace(timers);
        }
    }
    platform::DdeLinks& links() {
        return bridge ? static_cast<platform::DdeLinks&>(bridge->links) : here->links;
    }
    platform::StationMessages& station() {
        return bridge ? static_cast<platform::StationMessages&>(bridge->station) : here->station;
    }

    Timers timers;
    TcpServers tcpServers;
    UdpSockets udp;
    std::optional<HereLinks> here;
    std::optional<BridgeLinks> bridge;
};

class Outside : public app::Outside {
  public:
    Outside(const app::Options& options, const Tell& notify)
        : folder_(options.directory.empty() ? usualFolder() : options.directory),
          hardware_(devices_, options.hardware,
                    qt_ports::SettingsFile(storage_, folder_.path() / devices::kSettingsFile)),
          positions_(folder_.path() / config::kPositionFile, notify), goesFirst_(options.realtime) {
        // No box of the system's own about a crash may keep the process, and with it the coils, alive.
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
        if (options.trace)
            trace_.emplace(*options.trace, folder_.path(), kOwnFiles, started_, notify, hardware_.printer(),
                           hardware_.board());
    }

    const std::filesystem::path& folder() const override { return folder_.path(); }
    const std::string& notice() const override { return hardware_.notice(); }

    app::Ports ports(const app::ToolkitPorts& toolkit) override {
        // The station programs of this computer need no bridge.
        Connections& connections =
            connections_.emplace(toolkit.tcp, hardware_.settings(), hardware_.choosesBridge());
        hardware_.bridgeState = [this] { return bridgeState(); };
        hardware_.onUse = [this](const HardwareSettings& used) { use(used); };
        app::Ports ports{.printer = hardware_.printer(),
                         .usb = hardware_.board(),
                         .timers = connections.timers,
                         .links = connections.links(),
                         .station = connections.station(),
                         .udp = connections.udp,
                         .tcp = toolkit.tcp,
                         .tcpServers = connections.tcpServers,
                         .dialogs = toolkit.dialogs,
                         .shell = toolkit.shell,
                         .sound = sound_,
                         .hardware = hardware_,
                         .storage = storage_,
                         .positions = positions_,
                         .settings = hardware_.file()};
        if (trace_) {
            ports.printer = trace_->printer;
            ports.usb = trace_->board;
        }
        return ports;
    }

    void attend(Events events) override {
        events_ = std::move(events);
        devices_.withWatchdog([this](Watchdog& watchdog) {
            watchdog_ = &watchdog;
            watchdog.watch(
                [this] { events_.fail("The program did not answer for two seconds while an engine ran"); },
                events_.fail);
            watchdog.beat(engineRuns_);
        });
        if (goesFirst_) {
            events_.stepClock(SetPriorityClass(GetCurrentProcess(), HIGH_PRIORITY_CLASS)
                                  ? "high priority"
                                  : "not high priority: " + reason(GetLastError()));
        }
        endRequests_.deliver(events_.end);
    }

    void beat(bool engineRuns) override {
        engineRuns_ = engineRuns;
        if (watchdog_) watchdog_->beat(engineRuns);
    }

    void closeTrace() override {
        if (trace_) trace_->file.close();
    }

  private:
    std::string bridgeState() const {
        const bool used = connections_->bridge.has_value();
        if (used != hardware_.choosesBridge()) return "used from the next start";
        return used ? connections_->bridge->bridge.stateText() : "not needed for programs on this computer";
    }

    void use(const HardwareSettings& settings) {
        connections_->udp.setAddress(settings.n1mmListen);
        if (connections_->bridge) connections_->bridge->bridge.setAddress(devices::bridgeAddress(settings));
    }

    const trace::TraceFile::Clock::time_point started_ = trace::TraceFile::Clock::now();
    EndRequests endRequests_; // first, so that no request is lost
    WorkFolder folder_;
    Storage storage_; // finishes its jobs before the folder is released
    Devices devices_;
    devices::ChosenHardware hardware_;
    PositionFile positions_;
    std::optional<trace::TracedOutputs> trace_;
    std::optional<Connections> connections_;
    Sound sound_{programFolder() / "assets" / "sounds"};
    Events events_;
    Watchdog* watchdog_ = nullptr; // none as long as all outputs are simulated
    bool engineRuns_ = false;
    const bool goesFirst_;
};

} // namespace

} // namespace windows_ports

void app::Outside::tell(const std::string& text, bool isError) {
    windows_ports::joinConsole();
    if (!windows_ports::hasOutput()) {
        windows_ports::showMessage("Twinstep", text, isError);
    } else if (isError) {
        windows_ports::writeError(text);
    } else {
        windows_ports::writeOutput(text);
    }
}

std::unique_ptr<app::Outside> app::Outside::open(const Options& options, const Tell& notify) {
    return std::make_unique<windows_ports::Outside>(options, notify);
}
