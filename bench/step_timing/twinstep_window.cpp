#include "config/record_file.h"
#include "config/records.h"
#include "platform/linux/realtime.h"
#include "platform/linux/timers.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/realtime_kit.h"
#include "platform/trace/trace_file.h"
#include "platform/trace/traced_outputs.h"
#include "subjects.h"
#include "tests/simulated_outside.h"
#include "ui/main_window.h"

#include <QCoreApplication>
#include <QTimer>
#include <cmath>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace bench {

namespace {

constexpr int kStepsPerSecond = 1000;
constexpr int kStepsPerTurn = 200;
/// A step is then a sixteenth of a unit: exact in every position, so that a position says its steps.
constexpr float kUnitsPerTurn = 12.5F;
constexpr float kStepsPerUnit = kStepsPerTurn / kUnitsPerTurn;
/// Until the window has drawn itself for the first time.
constexpr auto kSettled = std::chrono::milliseconds(700);

void writeSettings(platform::Storage& storage, const std::filesystem::path& folder) {
    namespace record = config::record;
    config::RecordFile(storage, folder / "save.cfg")
        .write({config::integerRecord(record::kStepsA, kStepsPerTurn),
                config::integerRecord(record::kStepsB, kStepsPerTurn),
                config::singleRecord(record::kUnitsA, kUnitsPerTurn),
                config::singleRecord(record::kUnitsB, kUnitsPerTurn),
                config::integerRecord(record::kFastA, kStepsPerSecond),
                config::integerRecord(record::kFastB, kStepsPerSecond),
                config::integerRecord(record::kSlowA, kStepsPerSecond),
                config::integerRecord(record::kSlowB, kStepsPerSecond),
                config::integerRecord(record::kFunction, form::kCoilTuner)});
}

/// One tick for each full step: an engine's four outputs are written one after the other.
std::vector<Nanoseconds> stepsInTrace(const std::filesystem::path& trace, std::int64_t from,
                                      int firstOutput) {
    std::ifstream file(trace);
    std::vector<Nanoseconds> steps;
    std::int64_t microseconds = 0;
    std::string kind;
    int output = 0, state = 0;
    for (int writes = 0; file >> microseconds >> kind >> output >> state;) {
        if (kind != "port" || output < firstOutput || output >= firstOutput + 4 || microseconds < from)
            continue;
        if (writes++ % 4 == 0) steps.push_back(microseconds * 1000);
    }
    return steps;
}

void runLoop(std::chrono::milliseconds duration) {
    // Not quit(), which would ask the window to close.
    QTimer::singleShot(duration, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

} // namespace

Round twinstepWindow(std::chrono::seconds duration, Scheduling scheduling,
                     const std::filesystem::path& folder) {
    const auto start = trace::TraceFile::Clock::now();
    trace::TraceFile file(folder / "trace", start, [](const std::string& why) { std::cerr << why << '\n'; });
    qt_ports::FdWatcher watcher;
    qt_ports::RealtimeKit kit;
    std::optional<linux_ports::Realtime> realtime;
    std::string remark;
    if (scheduling == Scheduling::RealTime) {
        realtime.emplace(watcher, kit, [&](const auto& state) { remark = state.text(); });
        remark = realtime->state().text();
        if (!realtime->state().granted) return {.cpuShare = 0, .remark = remark, .series = {}};
    }
    linux_ports::Timers timers(watcher);
    SimulatedOutside outside;
    writeSettings(outside.storage, folder);
    trace::TracedPrinterPort port(outside.port, file);
    app::Ports ports = outside.ports();
    ports.printer = port;
    ports.timers = timers;
    app::Controller controller(ports, folder);
    ui::MainWindow window(controller.form(), controller.boxes());
    window.show();
    controller.start();
    runLoop(kSettled);

    form::Form1& form = controller.form();
    const auto begin =
        std::chrono::duration_cast<std::chrono::microseconds>(trace::TraceFile::Clock::now() - start);
    form.cmdAv.Click.fire();
    form.cmdAvB.Click.fire();
    const CpuMeter cpu;
    runLoop(duration);
    const double share = cpu.share();
    form.cmdAlt.Click.fire();
    form.cmdAltB.Click.fire();
    file.close();

    const auto stepsOf = [](float position) { return std::llround(position * kStepsPerUnit); };
    return {.cpuShare = share,
            .remark = remark,
            .series = {{"A", stepsInTrace(folder / "trace", begin.count(), 1), stepsOf(form.sngPosA)},
                       {"B", stepsInTrace(folder / "trace", begin.count(), 5), stepsOf(form.sngPosB)}}};
}

} // namespace bench
