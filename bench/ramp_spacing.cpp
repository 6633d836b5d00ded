#include "config/record_file.h"
#include "config/records.h"
#include "engine/ramp.h"
#include "platform/linux/timers.h"
#include "platform/qt/fd_watcher.h"
#include "tests/simulated_outside.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>

/// The spacing of the steps of a jog of engine A with a ramp, by the kernel's timers, beside what the ramp
/// plans: up from 100 to 1000 steps/s in 0.4 s, on at 1000, and down after its release.
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSlow = 100, kFast = 1000; // steps/s
constexpr int kRamp = 20;                // units of 20 ms
constexpr std::chrono::milliseconds kRampTime(kRamp * 20), kHeld(600), kAll(1200);

/// Remembers when the patterns came.
class Port : public simulated::PrinterPort {
  public:
    void endPattern() override { at.push_back(Clock::now()); }
    std::vector<Clock::time_point> at;
};

void runLoop(std::chrono::milliseconds duration) {
    QTimer::singleShot(duration, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

/// Microseconds between the steps of the jog.
std::vector<double> jog(const std::filesystem::path& folder) {
    namespace record = config::record;
    SimulatedOutside outside;
    config::RecordFile(outside.storage, folder / "save.cfg")
        .write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                config::integerRecord(record::kFastA, kFast), config::integerRecord(record::kSlowA, kSlow),
                config::integerRecord(record::kFunction, form::kCoilTuner)});
    qt_ports::FdWatcher watcher;
    linux_ports::Timers timers(watcher);
    Port port;
    app::Ports ports = outside.ports();
    ports.printer = port;
    ports.timers = timers;
    app::Controller controller(ports, folder);
    controller.start();
    form::Form1& form = controller.form();
    form.HScroll1.set(kRamp);
    form.intDirA = form::kForward;
    form.cmdAlta.Click.fire();
    port.at.clear();
    form.cmdAvMan.MouseDown.fire();
    runLoop(kHeld);
    form.cmdAvMan.MouseUp.fire();
    runLoop(kAll - kHeld);
    std::vector<double> spacing;
    for (std::size_t n = 1; n < port.at.size(); ++n)
        spacing.push_back(std::chrono::duration<double, std::micro>(port.at[n] - port.at[n - 1]).count());
    return spacing;
}

/// Microseconds of the same steps as planned.
std::vector<double> planned(std::size_t steps) {
    const engine::RampCurve curve(1000 / kSlow, 1000 / kFast, kRampTime);
    std::vector<double> spacing;
    const auto level = [&](std::int64_t step) {
        const auto left = static_cast<std::int64_t>(steps) + 1 - step;
        return std::min({step, left, curve.levels()});
    };
    for (std::int64_t step = 1; step <= static_cast<std::int64_t>(steps); ++step) {
        const auto interval = curve.interval(level(step), level(step + 1));
        spacing.push_back(std::chrono::duration<double, std::micro>(interval).count());
    }
    return spacing;
}

} // namespace

int main(int count, char** arguments) {
    const QCoreApplication application(count, arguments);
    const QTemporaryDir folder;
    const std::vector<double> measured = jog(folder.path().toStdString());
    const std::vector<double> plan = planned(measured.size());
    std::printf("step   planned  measured, in ms\n");
    std::vector<double> off;
    for (std::size_t n = 0; n < measured.size(); ++n) {
        off.push_back(std::fabs(measured[n] - plan[n]));
        if (n < 5 || n + 5 >= measured.size() || n % 60 == 0)
            std::printf("%4zu  %8.3f  %8.3f\n", n + 1, plan[n] / 1000, measured[n] / 1000);
    }
    std::ranges::sort(off);
    if (off.empty()) return 1;
    std::printf(
        "%zu steps; off the plan: median %.0f us, 99 %% %.0f us, most %.0f us; shortest %.3f ms, fast is "
        "%.3f ms\n",
        measured.size() + 1, off[off.size() / 2], off[off.size() * 99 / 100], off.back(),
        *std::ranges::min_element(measured) / 1000, 1000.0 / kFast);
    return 0;
}
