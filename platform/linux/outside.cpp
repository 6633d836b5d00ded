// The program's outside on Linux. This file belongs to the program and not to a library:
// they choose the adapters, including those of the toolkit.

#include "app/outside.h"

#include "app/version.h"
#include "config/position_slots.h"
#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "platform/devices/chosen_hardware.h"
#include "platform/linux/devices.h"
#include "platform/linux/position_file.h"
#include "platform/linux/realtime.h"
#include "platform/linux/signals.h"
#include "platform/linux/storage.h"
#include "platform/linux/tcp_servers.h"
#include "platform/linux/timers.h"
#include "platform/linux/udp_sockets.h"
#include "platform/linux/work_folder.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/realtime_kit.h"
#include "platform/qt/sound.h"
#include "platform/trace/traced_outputs.h"
#include "runtime/errors.h"

#include <array>
#include <iostream>
#include <optional>

namespace linux_ports {

namespace {

using platform::HardwareSettings;

/// The beginnings of the names of all files in the program's folder, including temporary files.
constexpr std::array<std::string_view, 4> kOwnFiles = {"save.cfg", devices::kSettingsFile,
                                                       config::kPositionFile, "HiResMem.txt"};

in_addr listenAddress(const HardwareSettings& settings) {
    const auto address = parseAddress(settings.n1mmListen);
    if (!address) throw runtime::ObjectError("\"" + settings.n1mmListen + "\" is no IPv4 address");
    return *address;
}

/// Clocks and links: what needs the event loop.
struct Connections {
    Connections(FdWatcher& watcher, platform::TcpClients& tcp, const HardwareSettings& settings)
        : timers(watcher), udp(watcher, listenAddress(settings)), tcpServers(watcher),
          bridge(tcp, timers, std::string(app::kVersion), devices::bridgeAddress(settings)) {}

    Timers timers;
    UdpSockets udp;
    TcpServers tcpServers;
    bridge_ports::Connection bridge;
    bridge_ports::DdeLinks links{bridge, timers};
    bridge_ports::StationMessages station{bridge, timers};
};

class Outside : public app::Outside {
  public:
    Outside(const app::Options& options, const Tell& notify)
        : folder_(options.directory.empty() ? "." : options.directory),
          hardware_(devices_, options.hardware,
                    qt_ports::SettingsFile(storage_, folder_.path() / devices::kSettingsFile)),
          positions_(folder_.path() / config::kPositionFile, notify), wantsRealtime_(options.realtime) {
        if (!folder_.held())
            std::cerr << "twinstep: the file system of this folder cannot keep a second Twinstep out of it\n";
        if (options.trace)
            trace_.emplace(*options.trace, folder_.path(), kOwnFiles, started_, notify, hardware_.printer(),
                           hardware_.board());
    }

    const std::filesystem::path& folder() const override { return folder_.path(); }
    const std::string& notice() const override { return hardware_.notice(); }

    app::Ports ports(const app::ToolkitPorts& toolkit) override {
        Connections& connections = connections_.emplace(watcher_, toolkit.tcp, hardware_.settings());
        hardware_.bridgeState = [&bridge = connections.bridge] { return bridge.stateText(); };
        hardware_.onUse = [this](const HardwareSettings& settings) { use(settings); };
        lookForBridge();
        app::Ports ports{.printer = hardware_.printer(),
                         .usb = hardware_.board(),
                         .timers = connections.timers,
                         .links = connections.links,
                         .station = connections.station,
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
            watchdogWatch_ = watchdog.watch(
                watcher_,
                [this] { events_.fail("The program did not answer for two seconds while an engine ran"); },
                events_.fail);
            watchdog.beat(engineRuns_);
        });
        if (wantsRealtime_) {
            const auto show = [this](const Realtime::State& state) { events_.stepClock(state.text()); };
            realtime_.emplace(watcher_, realtimeKit_, show);
            show(realtime_->state());
        }
        signalWatch_ = signals_.deliver(watcher_, events_.end);
    }

    void beat(bool engineRuns) override {
        engineRuns_ = engineRuns;
        if (watchdog_) watchdog_->beat(engineRuns);
    }

    void closeTrace() override {
        if (trace_) trace_->file.close();
    }

  private:
    void use(const HardwareSettings& settings) {
        connections_->udp.setAddress(listenAddress(settings));
        connections_->bridge.setAddress(devices::bridgeAddress(settings));
        lookForBridge();
    }

    /// A bridge that the user has entered is connected at once; the default bridge only when a link needs it.
    void lookForBridge() { connections_->bridge.stayConnected(hardware_.choosesBridge()); }

    const trace::TraceFile::Clock::time_point started_ = trace::TraceFile::Clock::now();
    EndSignals signals_; // first, so that no signal is lost
    WorkFolder folder_;
    Storage storage_; // finishes its jobs before the folder is released
    Devices devices_;
    devices::ChosenHardware hardware_;
    PositionFile positions_;
    std::optional<trace::TracedOutputs> trace_;
    qt_ports::FdWatcher watcher_;
    std::optional<Connections> connections_;
    Events events_;
    Watchdog* watchdog_ = nullptr; // none as long as all outputs are simulated
    bool engineRuns_ = false;
    std::unique_ptr<FdWatch> watchdogWatch_, signalWatch_;
    const bool wantsRealtime_;
    qt_ports::Sound sound_{TWINSTEP_DATA_FOLDER};
    qt_ports::RealtimeKit realtimeKit_;
    std::optional<Realtime> realtime_;
};

} // namespace

} // namespace linux_ports

void app::Outside::tell(const std::string& text, bool isError) {
    (isError ? std::cerr : std::cout) << text << std::flush;
}

std::unique_ptr<app::Outside> app::Outside::open(const Options& options, const Tell& notify) {
    return std::make_unique<linux_ports::Outside>(options, notify);
}
