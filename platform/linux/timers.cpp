#include "platform/linux/timers.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"
#include "runtime/step_schedule.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>

namespace linux_ports {

namespace {

using Time = runtime::StepSchedule::Time;

Time now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + Time(time.tv_nsec);
}

/// The kernel timer is armed anew for each tick, so that the schedule alone decides.
class KernelTimer : public platform::PeriodicTimer {
  public:
    KernelTimer(FdWatcher& watcher, std::function<void()> tick)
        : tick_(std::make_shared<std::function<void()>>(std::move(tick))),
          fd_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
        if (!fd_) throw runtime::ObjectError("Cannot create a timer: " + reason(errno));
        watch_ = watcher.watch(fd_.get(), [this] { expired(); });
    }

    void start(int milliseconds) override {
        schedule_.start(now(), std::chrono::milliseconds(milliseconds));
        arm(schedule_.next());
    }

    // Disarming also takes back an expiry that nobody has read yet, so that no tick is left in flight.
    void stop() override { arm(Time::zero()); }

  private:
    void expired() {
        std::uint64_t expirations = 0;
        if (::read(fd_.get(), &expirations, sizeof expirations) != sizeof expirations) return;
        // Armed before the tick: a tick that opens a box must not keep the next ones from coming.
        schedule_.ticked(now());
        arm(schedule_.next());
        // The tick may destroy this timer; what runs must outlive it.
        const auto tick = tick_;
        (*tick)();
    }

    /// Zero disarms.
    void arm(Time moment) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
        itimerspec when{};
        when.it_value.tv_sec = seconds.count();
        when.it_value.tv_nsec = (moment - seconds).count();
        ::timerfd_settime(fd_.get(), TFD_TIMER_ABSTIME, &when, nullptr);
    }

    std::shared_ptr<std::function<void()>> tick_;
    runtime::StepSchedule schedule_;
    FileDescriptor fd_;
    std::unique_ptr<FdWatch> watch_;
};

} // namespace

std::unique_ptr<platform::PeriodicTimer> Timers::create(std::function<void()> tick) {
    return std::make_unique<KernelTimer>(watcher_, std::move(tick));
}

} // namespace linux_ports
