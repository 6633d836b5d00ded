#include "app/controller.h"
#include "app/version.h"
#include "platform/linux/printer_port.h"
#include "platform/linux/signals.h"
#include "platform/linux/timers.h"
#include "platform/linux/udp_sockets.h"
#include "platform/linux/watchdog.h"
#include "platform/linux/work_folder.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/shell.h"
#include "platform/qt/sound.h"
#include "platform/qt/tcp_clients.h"
#include "platform/simulated/links.h"
#include "platform/simulated/outputs.h"
#include "platform/trace/traced_outputs.h"
#include "runtime/errors.h"
#include "ui/command_line.h"
#include "ui/heartbeat.h"
#include "ui/main_window.h"

#include <QApplication>
#include <QMessageBox>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {

constexpr const char* kUsualPort = "/dev/parport0";

struct Outputs {
    std::unique_ptr<platform::PrinterPort> port;
    std::string name;
};

Outputs openPort(const std::string& device, linux_ports::Watchdog& watchdog) {
    auto port = std::make_unique<linux_ports::PrinterPort>(device);
    watchdog.guardPort(port->descriptor());
    return {std::move(port), device};
}

/// A port that the user named is opened or refused; only where none was named may the outputs be simulated.
Outputs openOutputs(const std::optional<std::string>& named, linux_ports::Watchdog& watchdog) {
    if (named && *named != ui::kSimulated) return openPort(*named, watchdog);
    if (!named && std::filesystem::exists(kUsualPort)) {
        try {
            return openPort(kUsualPort, watchdog);
        } catch (const runtime::ObjectError& error) {
            std::cerr << "twinstep: " << error.what() << "; the outputs are simulated\n";
        }
    }
    return {std::make_unique<simulated::PrinterPort>(), ui::kSimulated};
}

in_addr listenAddress(const std::string& text) {
    if (const auto address = linux_ports::parseAddress(text)) return *address;
    throw runtime::ObjectError("--n1mm-listen: \"" + text + "\" is no IPv4 address such as 192.168.1.20");
}

/// Says why the trace ends here, once, beside the engines that go on: the box is not modal.
void reportTraceFailure(const std::string& why) {
    std::cerr << "twinstep: " << why << std::endl;
    QMetaObject::invokeMethod(QCoreApplication::instance(), [why] {
        auto* box = new QMessageBox(QMessageBox::Warning, "Twinstep", QString::fromStdString(why));
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setModal(false);
        box->show();
    });
}

/// While the toolkit looks for a display: it would end the program with a screenful and an abort.
void onToolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::cerr
            << "twinstep: there is no display to show the window on; start it from a desktop session, or "
               "set DISPLAY.\n";
        std::_Exit(EXIT_FAILURE);
    }
    const bool aboutTheDisplay = context.category && std::strncmp(context.category, "qt.qpa.", 7) == 0;
    if (!aboutTheDisplay) std::cerr << text.toStdString() << '\n';
}

/// Runs when something ends the program by std::exit while this object lives, as the toolkit does when the
/// display goes away.
class LastWish {
  public:
    explicit LastWish(std::function<void()> wish) {
        static const int registered = std::atexit([] {
            if (wish_) std::exchange(wish_, nullptr)();
        });
        static_cast<void>(registered);
        wish_ = std::move(wish);
    }
    LastWish(const LastWish&) = delete;
    LastWish& operator=(const LastWish&) = delete;
    ~LastWish() { wish_ = nullptr; }

  private:
    static inline std::function<void()> wish_;
};

ui::CommandLine readCommandLine(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return ui::parseCommandLine(QCoreApplication::arguments());
}

int run(int argc, char** argv) {
    const auto started = trace::TraceFile::Clock::now();
    linux_ports::EndSignals endSignals;
    const auto commandLine = readCommandLine(argc, argv);
    if (!commandLine.options) {
        (commandLine.exitCode == 0 ? std::cout : std::cerr) << commandLine.text;
        return commandLine.exitCode;
    }
    const ui::Options& options = *commandLine.options;
    const in_addr address = listenAddress(options.listenAddress);
    const linux_ports::WorkFolder folder(options.directory);
    if (!folder.held()) {
        std::cerr << "twinstep: the file system of this folder cannot keep a second Twinstep out of it\n";
    }
    std::unique_ptr<trace::TraceFile> opened;
    if (options.trace)
        opened = std::make_unique<trace::TraceFile>(*options.trace, started, reportTraceFailure);
    linux_ports::Watchdog watchdog;
    const Outputs outputs = openOutputs(options.port, watchdog);

    const auto usualHandler = qInstallMessageHandler(onToolkitMessage);
    QApplication application(argc, argv);
    qInstallMessageHandler(usualHandler);
    QApplication::setApplicationName("twinstep");
    QApplication::setApplicationVersion(app::kVersion.data());
    const auto traceFile = std::move(opened); // ends before the application, to which it reports

    qt_ports::FdWatcher watcher;
    linux_ports::Timers timers(watcher);
    linux_ports::UdpSockets udp(watcher, address);
    qt_ports::TcpClients tcp;
    simulated::UsbBoard usb(options.usbSimulated ? 0 : -1);
    simulated::DdeLinks links;
    simulated::StationMessages station;
    qt_ports::Dialogs dialogs;
    qt_ports::Shell shell(TWINSTEP_DATA_FOLDER);
    qt_ports::Sound sound(TWINSTEP_DATA_FOLDER);
    std::optional<trace::TracedPrinterPort> tracedPort;
    std::optional<trace::TracedUsbBoard> tracedUsb;
    if (traceFile) {
        tracedPort.emplace(*outputs.port, *traceFile);
        tracedUsb.emplace(usb, *traceFile);
    }
    app::Controller controller({.printer = tracedPort ? *tracedPort : *outputs.port,
                                .usb = tracedUsb ? static_cast<platform::UsbBoard&>(*tracedUsb) : usb,
                                .timers = timers,
                                .links = links,
                                .station = station,
                                .udp = udp,
                                .tcp = tcp,
                                .dialogs = dialogs,
                                .shell = shell,
                                .sound = sound,
                                .outputsName = outputs.name,
                                .trackingServer = options.trackingServer},
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
    const LastWish lastWish([&] {
        controller.form().mnuUscita.Click.fire();
        if (traceFile) traceFile->close();
    });
    const auto fail = [&controller](const std::string& why) {
        controller.form().guard([&why] { throw runtime::ObjectError(why); });
    };
    const auto watchdogWatch = watchdog.watch(
        watcher, [&fail] { fail("The program did not answer for two seconds while an engine ran"); }, fail);
    const ui::Heartbeat heartbeat(controller.form(),
                                  [&watchdog](bool engineRuns) { watchdog.beat(engineRuns); });
    const auto signalWatch = endSignals.deliver(watcher, end);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, end);

    window.show();
    controller.start();
    return ended ? EXIT_SUCCESS : QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "twinstep: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
