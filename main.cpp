#include "app/controller.h"
#include "app/version.h"
#include "chosen_hardware.h"
#include "config/hardware_settings.h"
#include "platform/linux/bridge_dde_links.h"
#include "platform/linux/bridge_station_messages.h"
#include "platform/linux/realtime.h"
#include "platform/linux/signals.h"
#include "platform/linux/timers.h"
#include "platform/linux/udp_sockets.h"
#include "platform/linux/work_folder.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/realtime_kit.h"
#include "platform/qt/shell.h"
#include "platform/qt/sound.h"
#include "platform/qt/tcp_clients.h"
#include "platform/trace/traced_outputs.h"
#include "runtime/errors.h"
#include "ui/command_line.h"
#include "ui/display.h"
#include "ui/heartbeat.h"
#include "ui/main_window.h"

#include <QApplication>
#include <cstdlib>
#include <iostream>

namespace {

in_addr listenAddress(const platform::HardwareSettings& settings) {
    const auto address = linux_ports::parseAddress(settings.n1mmListen);
    if (!address) throw runtime::ObjectError("\"" + settings.n1mmListen + "\" is no IPv4 address");
    return *address;
}

linux_ports::BridgeAddress bridgeAddress(const platform::HardwareSettings& settings) {
    const auto endpoint = config::parseEndpoint(settings.bridge, bridge::kPort);
    if (!endpoint) throw runtime::ObjectError("\"" + settings.bridge + "\" is no address of a bridge");
    return {endpoint->host, endpoint->port};
}

ui::CommandLine readCommandLine(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return ui::parseCommandLine(QCoreApplication::arguments());
}

int run(int argc, char** argv, const ui::Options& options) {
    const auto started = trace::TraceFile::Clock::now();
    linux_ports::EndSignals endSignals;
    const linux_ports::WorkFolder folder(options.directory);
    if (!folder.held()) {
        std::cerr << "twinstep: the file system of this folder cannot keep a second Twinstep out of it\n";
    }
    std::unique_ptr<trace::TraceFile> opened;
    if (options.trace) opened = std::make_unique<trace::TraceFile>(*options.trace, started, ui::notify);
    ChosenHardware hardware(options.hardware, qt_ports::SettingsFile(folder.path() / kSettingsFile));

    const auto usualHandler = qInstallMessageHandler(ui::tellOfNoDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(usualHandler);
    QApplication::setApplicationName("twinstep");
    QApplication::setWindowIcon(QIcon::fromTheme("twinstep"));
    QApplication::setApplicationVersion(app::kVersion.data());
    const auto traceFile = std::move(opened); // ends before the application, to which it reports

    qt_ports::FdWatcher watcher;
    linux_ports::Timers timers(watcher);
    linux_ports::UdpSockets udp(watcher, listenAddress(hardware.settings()));
    qt_ports::TcpClients tcp;
    linux_ports::BridgeConnection bridge(tcp, timers, std::string(app::kVersion),
                                         bridgeAddress(hardware.settings()));
    linux_ports::BridgeDdeLinks links(bridge, timers);
    linux_ports::BridgeStationMessages station(bridge, timers);
    qt_ports::Dialogs dialogs;
    qt_ports::Shell shell(TWINSTEP_DATA_FOLDER);
    qt_ports::Sound sound(TWINSTEP_DATA_FOLDER);
    std::optional<trace::TracedPrinterPort> tracedPort;
    std::optional<trace::TracedUsbBoard> tracedUsb;
    if (traceFile) {
        tracedPort.emplace(hardware.printer(), *traceFile);
        tracedUsb.emplace(hardware.board(), *traceFile);
    }
    platform::PrinterPort& printer = tracedPort ? *tracedPort : hardware.printer();
    platform::UsbBoard& board = tracedUsb ? static_cast<platform::UsbBoard&>(*tracedUsb) : hardware.board();
    hardware.bridgeState = [&bridge] { return bridge.stateText(); };
    // A bridge that the user has named is looked for at once; the usual one, when something asks for it.
    const auto lookForBridge = [&] {
        bridge.stayConnected(hardware.isFixed(&platform::HardwareSettings::bridge) ||
                             hardware.settings().bridge != platform::HardwareSettings().bridge);
    };
    hardware.onUse = [&](const platform::HardwareSettings& settings) {
        udp.setAddress(listenAddress(settings));
        bridge.setAddress(bridgeAddress(settings));
        lookForBridge();
    };
    lookForBridge();
    app::Controller controller({.printer = printer,
                                .usb = board,
                                .timers = timers,
                                .links = links,
                                .station = station,
                                .udp = udp,
                                .tcp = tcp,
                                .dialogs = dialogs,
                                .shell = shell,
                                .sound = sound,
                                .hardware = hardware},
                               folder.path());
    ui::MainWindow window(controller.form(), controller.boxes());

    // Leaves every event loop, those of open boxes too, and the main one even where it has not begun yet.
    bool ended = false;
    const auto leave = [&ended] {
        ended = true;
        QCoreApplication::exit();
    };
    controller.form().onUnload = leave;
    const auto end = [&] {
        controller.form().mnuUscita.Click.fire();
        leave();
    };
    window.onCloseRequested = [&controller] { controller.close(); };
    const ui::LastWish lastWish([&] {
        dialogs.useStandardError();
        controller.form().mnuUscita.Click.fire();
        // The board may not have been sent its last byte yet, and nothing is destroyed on this way out.
        controller.form().guard([&board] { board.closeDevice(); });
        if (traceFile) traceFile->close();
    });
    const auto fail = [&controller](const std::string& why) {
        controller.form().guard([&why] { throw runtime::ObjectError(why); });
    };
    std::unique_ptr<linux_ports::FdWatch> watchdogWatch;
    std::optional<ui::Heartbeat> heartbeat;
    hardware.withWatchdog([&](linux_ports::Watchdog& watchdog) {
        watchdogWatch = watchdog.watch(
            watcher, [&fail] { fail("The program did not answer for two seconds while an engine ran"); },
            fail);
        heartbeat.emplace(controller.form(), [&watchdog](bool engineRuns) { watchdog.beat(engineRuns); });
    });
    qt_ports::RealtimeKit realtimeKit;
    std::optional<linux_ports::Realtime> realtime;
    if (options.realtime) {
        const auto show = [&controller](const linux_ports::Realtime::State& state) {
            form::Label& clock = controller.form().lblClock;
            clock.Caption = state.text();
            clock.ToolTip = state.text();
            clock.Visible = true;
        };
        realtime.emplace(watcher, realtimeKit, show);
        show(realtime->state());
    }
    const auto signalWatch = endSignals.deliver(watcher, end);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, end);

    window.show();
    controller.start();
    if (!hardware.notice().empty()) ui::notify(hardware.notice());
    return ended ? EXIT_SUCCESS : QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const auto commandLine = readCommandLine(argc, argv);
    if (!commandLine.options) {
        (commandLine.exitCode == 0 ? std::cout : std::cerr) << commandLine.text;
        return commandLine.exitCode;
    }
    try {
        return run(argc, argv, *commandLine.options);
    } catch (const std::exception& error) {
        std::cerr << "twinstep: " << error.what() << '\n';
        if (commandLine.options->fromDesktop) ui::showFailure(argc, argv, error.what());
        return EXIT_FAILURE;
    }
}
