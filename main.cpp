#include "app/outside.h"
#include "app/version.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/shell.h"
#include "platform/qt/tcp_clients.h"
#include "runtime/errors.h"
#include "ui/command_line.h"
#include "ui/display.h"
#include "ui/heartbeat.h"
#include "ui/main_window.h"
#include "ui/window_place.h"

#include <QApplication>
#include <QStyle>
#include <cstdlib>
#include <string>

namespace {

/// The window and the whole program behind it, from start to end.
class Program {
  public:
    explicit Program(std::unique_ptr<app::Outside> outside) : outside_(std::move(outside)) {
        controller_.form().onUnload = [this] { leave(); };
        window_.onCloseRequested = [this] { controller_.close(); };
        outside_->attend({.end = [this] { end(); },
                          .fail = [this](const std::string& why) { fail(why); },
                          .stepClock = [this](const std::string& state) { showStepClock(state); }});
        QObject::connect(qApp, &QGuiApplication::commitDataRequest, &window_, [this] { end(); });
    }

    int run() {
        window_.show();
        controller_.start();
        if (!outside_->notice().empty()) ui::notify(outside_->notice());
        return ended_ ? EXIT_SUCCESS : QApplication::exec();
    }

  private:
    /// Leaves every event loop, also those of open boxes, and the main event loop even before it has begun.
    void leave() {
        ended_ = true;
        QCoreApplication::exit();
    }

    void end() {
        controller_.form().mnuUscita.Click.fire();
        leave();
    }

    /// The display is lost: the program ends here without running destructors.
    void endWithoutDisplay() {
        dialogs_.useStandardError();
        controller_.form().mnuUscita.Click.fire();
        // The board may not have been sent its last byte yet.
        controller_.form().guard([this] { ports_.usb.get().closeDevice(); });
        outside_->closeTrace();
    }

    void fail(const std::string& why) {
        controller_.form().guard([&why] { throw runtime::ObjectError(why); });
    }

    void showStepClock(const std::string& state) {
        form::Label& clock = controller_.form().lblClock;
        clock.Caption = state;
        clock.ToolTip = state;
        clock.Visible = true;
    }

    qt_ports::TcpClients tcp_;
    qt_ports::Dialogs dialogs_;
    qt_ports::Shell shell_{TWINSTEP_DATA_FOLDER};
    const std::unique_ptr<app::Outside> outside_;
    const app::Ports ports_ = outside_->ports({.tcp = tcp_, .dialogs = dialogs_, .shell = shell_});
    app::Controller controller_{ports_, outside_->folder()};
    ui::MainWindow window_{controller_.form(), controller_.boxes()};
    const ui::WindowPlace place_{window_, ports_.settings};
    const ui::Heartbeat heartbeat_{controller_.form(), [this](bool runs) { outside_->beat(runs); }};
    const ui::LastWish lastWish_{[this] { endWithoutDisplay(); }};
    bool ended_ = false;
};

ui::CommandLine readCommandLine(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return ui::parseCommandLine(QCoreApplication::arguments());
}

int run(int argc, char** argv, const app::Options& options) {
    // Opened before the window exists, so that errors appear where the program was started.
    auto outside = app::Outside::open(options, ui::notify);

    const auto usualHandler = qInstallMessageHandler(ui::tellOfNoDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(usualHandler);
    // The window is the same on every system; the toolkit's styles for Windows draw its sliders and boxes
    // otherwise.
    if (QApplication::style()->name().startsWith("windows")) QApplication::setStyle("Fusion");
    QApplication::setApplicationName("twinstep");
    QApplication::setWindowIcon(QIcon::fromTheme("twinstep"));
    QApplication::setApplicationVersion(app::kVersion.data());
    return Program(std::move(outside)).run();
}

} // namespace

int main(int argc, char** argv) {
    const auto commandLine = readCommandLine(argc, argv);
    if (!commandLine.options) {
        app::Outside::tell(commandLine.text, commandLine.exitCode != 0);
        return commandLine.exitCode;
    }
    try {
        return run(argc, argv, *commandLine.options);
    } catch (const std::exception& error) {
        app::Outside::tell("twinstep: " + std::string(error.what()) + "\n", true);
        if (commandLine.options->fromDesktop) ui::showFailure(argc, argv, error.what());
        return EXIT_FAILURE;
    }
}
