// Measures the rate of the steps, both engines at 1000 steps/s, while one input of the program after the
// other is flooded, beside the rate without. Ends with 1 when a flood costs more than one step in a hundred.

#include "bench/step_timing/witness.h"
#include "config/record_file.h"
#include "config/records.h"
#include "flood.h"
#include "platform/bridge/dde_links.h"
#include "platform/linux/tcp_servers.h"
#include "platform/linux/timers.h"
#include "platform/linux/udp_sockets.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/tcp_clients.h"
#include "rotor/tracking_data.h"
#include "tests/simulated_outside.h"
#include "ui/main_window.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr int kStepsPerSecond = 1000;
constexpr double kLeastShare = 0.99;
constexpr int kPairs = 5; // of a slice without and one with the flood
constexpr auto kSlice = 700ms;
constexpr auto kSettling = 200ms;    // before each slice
constexpr auto kBetweenInputs = 8ms; // as a mouse that is dragged, and faster than any key repeats

/// What a user does in the window, once every few milliseconds.
using Input = std::function<void(ui::MainWindow& window, form::Form1& form, int turn)>;

struct Door {
    const char* what;
    const char* flood; // empty: the user's
    int function;
    int program; // that tells the frequency
    Input input{};
};

void resize(ui::MainWindow& window, form::Form1& /*form*/, int turn) {
    window.resize(1300 + turn % 50 * 8, 760 + turn % 50 * 4);
}

void type(ui::MainWindow& window, form::Form1& form, int turn) {
    if (!form.txtAltaVelB.Enabled) form.lblMemAltaB.DblClick.fire();
    const int digit = turn % 4;
    const bool erases = digit == 3;
    for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QCoreApplication::postEvent(window.findChild<QWidget*>("txtAltaVelB"),
                                    new QKeyEvent(kind, erases ? Qt::Key_Backspace : Qt::Key_0 + digit, {},
                                                  erases ? QString() : QString::number(digit)));
    }
}

void moveMouse(ui::MainWindow& window, form::Form1& /*form*/, int turn) {
    const QPoint place(turn * 37 % window.width(), turn * 23 % window.height());
    QWidget* under = window.childAt(place);
    if (!under) return;
    const QPointF local = under->mapFrom(&window, place);
    for (const auto kind : {QEvent::HoverMove, QEvent::HoverEnter, QEvent::HoverLeave})
        QCoreApplication::postEvent(under, new QHoverEvent(kind, local, window.mapToGlobal(place), local));
}

void dragSlider(ui::MainWindow& /*window*/, form::Form1& form, int turn) {
    form.hScrCmdOff.userScroll(1 + turn % 10);
}

const std::vector<Door> kDoors = {
    {"N1MM Logger's datagrams", "datagrams", form::kCoilTuner, form::kN1mmLogger},
    {"its datagrams, 60 kB each", "long datagrams", form::kCoilTuner, form::kN1mmLogger},
    {"tracking server's lines", "tracking", form::kSatelliteRotor, form::kNoProgram},
    {"its lines, 60,000 blanks each", "blanks", form::kSatelliteRotor, form::kNoProgram},
    {"bridge's lines", "bridge", form::kCoilTuner, form::kHamRadioDeluxe},
    {"14 rotctld clients", "rotctld", form::kSatelliteRotor, form::kNoProgram},
    {"window resized", "", form::kCoilTuner, form::kNoProgram, resize},
    {"keys typed", "", form::kCoilTuner, form::kNoProgram, type},
    {"mouse moved", "", form::kCoilTuner, form::kNoProgram, moveMouse},
    {"slider dragged", "", form::kCoilTuner, form::kNoProgram, dragSlider},
};

bool isRotctld(const Door& door) {
    return std::strcmp(door.flood, "rotctld") == 0;
}

class TemporaryFolder {
  public:
    TemporaryFolder() {
        if (!::mkdtemp(name_.data())) throw std::runtime_error("no folder in /tmp");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(name_); }
    std::filesystem::path path() const { return name_; }

  private:
    std::string name_ = "/tmp/twinstep-floods-XXXXXX";
};

void runLoop(std::chrono::milliseconds duration) {
    // Not quit(), which would ask the window to close.
    QTimer::singleShot(duration, Qt::PreciseTimer, qApp, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

/// The program with its window, real timers and real sockets; its devices are simulated.
class Program : SimulatedOutside {
  public:
    Program(const Door& door, int freePort) {
        namespace record = config::record;
        std::vector<config::Record> records;
        for (const int number : {record::kFastA, record::kFastB, record::kSlowA, record::kSlowB})
            records.push_back(config::integerRecord(number, kStepsPerSecond));
        for (const int number : {record::kStepsA, record::kStepsB})
            records.push_back(config::integerRecord(number, 200));
        // Slow enough to stay off the end of the run.
        for (const int number : {record::kUnitsA, record::kUnitsB})
            records.push_back(config::singleRecord(number, 1));
        records.push_back(config::integerRecord(record::kFunction, door.function));
        records.push_back(config::integerRecord(record::kFrequencyProgram, door.program));
        records.push_back(config::integerRecord(record::kN1mmPort, freePort));
        records.push_back(config::integerRecord(record::kTrackingPort, freePort));
        records.push_back(config::integerRecord(record::kTrackingProgram, rotor::kOrbitron));
        config::RecordFile(storage, folder_.path() / "save.cfg").write(records);

        bridge_.setAddress({"127.0.0.1", static_cast<std::uint16_t>(freePort)});
        app::Ports outside = ports();
        outside.timers = timers_;
        outside.udp = sockets_;
        outside.tcp = clients_;
        outside.tcpServers = servers_;
        hardware.use({.port = "simulated", .rotctld = isRotctld(door) ? std::to_string(freePort) : "off"});
        outside.links = bridgeLinks_;
        controller_.emplace(outside, folder_.path());
        window_.emplace(controller_->form(), controller_->boxes());
        window_->show();
        controller_->start();
        if (door.program != form::kNoProgram) form().cmdAutoMemConn.Click.fire();
        form().cmdAv.Click.fire();
        form().cmdAvB.Click.fire();
    }

    form::Form1& form() { return controller_->form(); }
    ui::MainWindow& window() { return *window_; }
    /// What the flood brings arrives.
    bool hears(const Door& door) {
        if (isRotctld(door)) return form().lblRotctld.Caption.get().ends_with(", 14 clients");
        if (door.function == form::kSatelliteRotor) return !form().lblAzRx.Caption.get().empty();
        if (door.program == form::kN1mmLogger) return !form().lblFreqN1MM.Caption.get().empty();
        return !form().lblFreqRx.Caption.get().empty();
    }
    struct Slice {
        double rate; // of what is set
        double cpu;  // of a core
    };
    /// From now on for one slice.
    Slice run() {
        form().sngPosA = form().sngPosB = form().sngPosAz = form().sngPosEl = 0;
        runLoop(kSettling);
        const int steps = form().lngContaStep.value();
        const bench::Nanoseconds begin = bench::now();
        const bench::CpuMeter cpu;
        runLoop(kSlice);
        const double seconds = static_cast<double>(bench::now() - begin) / 1e9;
        return {(form().lngContaStep.value() - steps) / (2 * kStepsPerSecond * seconds), cpu.share()};
    }

  private:
    TemporaryFolder folder_;
    qt_ports::FdWatcher watcher_;
    linux_ports::Timers timers_{watcher_};
    linux_ports::UdpSockets sockets_{watcher_, *linux_ports::parseAddress("127.0.0.1")};
    qt_ports::TcpClients clients_;
    linux_ports::TcpServers servers_{watcher_};
    bridge_ports::Connection bridge_{clients_, timers_, "bench", {}};
    bridge_ports::DdeLinks bridgeLinks_{bridge_, timers_};
    std::optional<app::Controller> controller_;
    std::optional<ui::MainWindow> window_;
};

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
    return values[values.size() / 2];
}

/// The share of the steps that the flood leaves.
double measure(const Door& door) {
    const int port = bench::freePort();
    std::optional<bench::Flood> flood;
    if (*door.flood) flood.emplace(door.flood, port);
    if (flood) flood->start(); // a server greets
    Program program(door, port);
    int turn = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] { door.input(program.window(), program.form(), ++turn); });
    for (int wait = 0; flood && !program.hears(door) && wait < 5; ++wait)
        runLoop(1000ms);
    if (flood && !program.hears(door)) throw std::runtime_error(std::string(door.what) + " do not arrive");

    bench::Witness witness;
    std::vector<double> without, with, shares, cpu;
    bench::Nanoseconds stall = 0;
    for (int pair = 0; pair < kPairs; ++pair) {
        user.stop();
        if (flood) flood->stop();
        without.push_back(program.run().rate);
        witness.longestStall();
        if (door.input) user.start(kBetweenInputs);
        if (flood) flood->start();
        const Program::Slice flooded = program.run();
        with.push_back(flooded.rate);
        cpu.push_back(flooded.cpu);
        stall = std::max(stall, witness.longestStall());
        shares.push_back(with.back() / without.back());
    }
    std::printf("| %s | %.3f | %.3f | %.3f | %.0f %% | %.1f ms |\n", door.what, median(without), median(with),
                median(shares), median(cpu) * 100, static_cast<double>(stall) / 1e6);
    std::fflush(stdout);
    return median(shares);
}

} // namespace

int main(int argc, char** argv) try {
    if (argc == 4 && std::strcmp(argv[1], "pour") == 0) bench::pour(argv[2], std::stoi(argv[3]));
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QApplication application(argc, argv);
    std::cout << "| input flooded | rate without | rate with | share | CPU of a core | longest stall of the "
                 "machine "
                 "|\n|---|---|---|---|---|---|\n";
    bool all = true;
    for (const Door& door : kDoors) {
        if (argc == 2 && !std::strstr(door.what, argv[1])) continue;
        all &= measure(door) >= kLeastShare;
    }
    return all ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const std::exception& error) {
    std::cerr << "floods: " << error.what() << '\n';
    return EXIT_FAILURE;
}
