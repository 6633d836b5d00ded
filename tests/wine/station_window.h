#pragma once

#include "app/controller.h"
#include "config/records.h"
#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "platform/linux/timers.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/tcp_clients.h"
#include "tests/desk.h"
#include "tests/wine/wine.h"
#include "ui/main_window.h"

#include <memory>
#include <optional>

/// A port of this computer on which nobody listens.
int freePort();

/// The bridge under Wine, on a port of this computer.
class Bridge : public WindowsProgram {
  public:
    /// Waits until it listens.
    explicit Bridge(int port, const QStringList& more = {});
};

/// A station program that answers DDE.
class DdeServer : public WindowsProgram {
  public:
    enum Kind { HamRadioDeluxe, Orbitron, SatPc32 };
    explicit DdeServer(Kind kind, const QString& text = {});
    void set(const std::string& text) { tell("set " + text); }
};

/// A station program with a window of this title.
class LoggerWindow : public WindowsProgram {
  public:
    explicit LoggerWindow(const QString& title = "Logger32");
};

/// The program with its real window, clocks and network, its outputs simulated, in front of a bridge.
class StationWindow : public ::testing::Test {
  protected:
    /// Starts the program in this function, on the frequency of this program.
    void start(int function, int frequencyProgram = form::kNoProgram);
    /// Has a station program end the bridge at once. Not by a signal: Wine's own server keeps sockets of a
    /// program that is killed from outside Wine, and with them its port.
    void crashBridge(WindowsProgram& station);
    void startBridge(const QStringList& more = {}) { bridge.emplace(port, more); }

    form::Form1& f() { return controller_->form(); }
    ui::MainWindow& window() { return *window_; }
    QWidget& widget(const char* name);
    /// What a label or button shows.
    std::string text(const char* name);
    void click(const char* name);
    /// Whether the label comes to show this text.
    ::testing::AssertionResult shows(const char* name, const std::string& text);
    /// Whether the program has said so in a box of its own.
    bool said(const std::string& text);

    const int port = freePort();
    std::optional<Bridge> bridge;

  private:
    SimulatedOutside outside_;

  protected:
    simulated::PrinterPort& printer = outside_.port;
    simulated::Dialogs& dialogs = outside_.dialogs;

  private:
    TemporaryFolder folder_;
    qt_ports::FdWatcher watcher_;
    linux_ports::Timers timers_{watcher_};
    qt_ports::TcpClients tcp_;
    bridge_ports::Connection connection_{tcp_, timers_, "1.0.0", {"127.0.0.1", port}};
    bridge_ports::DdeLinks links_{connection_, timers_};
    bridge_ports::StationMessages station_{connection_, timers_};
    std::unique_ptr<app::Controller> controller_;
    std::unique_ptr<ui::MainWindow> window_;
};
