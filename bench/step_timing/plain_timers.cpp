#include "subjects.h"

#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <cerrno>
#include <stdexcept>
#include <sys/timerfd.h>
#include <system_error>
#include <unistd.h>

namespace bench {

namespace {

std::size_t expectedTicks(std::chrono::seconds duration) {
    return static_cast<std::size_t>(std::chrono::nanoseconds(duration).count() / kInterval);
}

} // namespace

Round bareLoop(std::chrono::seconds duration) {
    const int fd = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
    const itimerspec period{.it_interval = {0, kInterval}, .it_value = {0, kInterval}};
    if (fd < 0 || ::timerfd_settime(fd, 0, &period, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "timerfd");
    }
    Series series{.name = "bare", .ticks = {}};
    series.ticks.reserve(expectedTicks(duration) + 1);
    const CpuMeter cpu;
    const Nanoseconds end = now() + std::chrono::nanoseconds(duration).count();
    std::uint64_t expirations = 0;
    while (now() < end && ::read(fd, &expirations, sizeof expirations) == sizeof expirations)
        series.ticks.push_back(now());
    ::close(fd);
    return {.cpuShare = cpu.share(), .remark = {}, .series = {std::move(series)}};
}

Round toolkitTimer(std::chrono::seconds duration) {
    QMainWindow window;
    window.resize(1280, 720);
    window.show();
    Series series{.name = "toolkit", .ticks = {}};
    series.ticks.reserve(expectedTicks(duration) + 1);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] { series.ticks.push_back(now()); });
    timer.start(1);
    const CpuMeter cpu;
    QTimer::singleShot(duration, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
    return {.cpuShare = cpu.share(), .remark = {}, .series = {std::move(series)}};
}

} // namespace bench
