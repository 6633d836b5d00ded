#include "platform/linux/timers.h"

#include "runtime/errors.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>

namespace linux_ports {

Timers::Timers(FdWatcher& watcher) : fd_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (!fd_) throw runtime::ObjectError("Cannot create a timer: " + reason(errno));
    watch_ = watcher.watch(fd_.get(), [this] {
        std::uint64_t expirations = 0;
        if (::read(fd_.get(), &expirations, sizeof expirations) == sizeof expirations) expired();
    });
}

Timers::Time Timers::now() const {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + Time(time.tv_nsec);
}

void Timers::setAlarm(Time when) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(when);
    itimerspec alarm{};
    alarm.it_value.tv_sec = seconds.count();
    alarm.it_value.tv_nsec = (when - seconds).count();
    ::timerfd_settime(fd_.get(), TFD_TIMER_ABSTIME, &alarm, nullptr);
}

} // namespace linux_ports
