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
        : watcher_(watcher), shared_(std::make_shared<Shared>(Shared{.tick = std::move(tick)})),
          fd_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
        if (!fd_) throw runtime::ObjectError("Cannot create a timer: " + reason(errno));
    }
    KernelTimer(const KernelTimer&) = delete;
    KernelTimer& operator=(const KernelTimer&) = delete;
    ~KernelTimer() override { ++shared_->turns; }

    void start(Time period) override {
        ++shared_->turns;
        schedule_.start(now(), period);
        arm(schedule_.next());
        if (!watch_) watch_ = watcher_.watch(fd_.get(), [this] { expired(); });
    }

    void setPeriod(Time period) override {
        schedule_.setInterval(now(), period);
        arm(schedule_.next());
    }

    // Disarming also takes back an expiry that nobody has read yet, so that no tick is left in flight. Most
    // timers stand most of the time, and each descriptor that is watched costs every turn of the event loop.
    void stop() override {
        ++shared_->turns;
        arm(Time::zero());
        watch_.reset();
    }

    Time untilTick() const override { return schedule_.next() - now(); }

  private:
    /// What a tick needs when it has destroyed its timer.
    struct Shared {
        std::function<void()> tick;
        std::uint64_t turns = 0; // ticks, starts, stops and the end of the timer
    };

    void expired() {
        std::uint64_t expirations = 0;
        if (::read(fd_.get(), &expirations, sizeof expirations) != sizeof expirations) return;
        // Armed before the tick: a tick that opens a box must not keep the next ones from coming.
        schedule_.ticked(now());
        arm(schedule_.next());
        const auto shared = shared_;
        const auto turn = ++shared->turns;
        shared->tick();
        const bool isStillLast = shared->turns == turn;
        if (isStillLast) keepDistance();
    }

    void keepDistance() {
        const Time planned = schedule_.next();
        schedule_.finished(now());
        if (schedule_.next() != planned) arm(schedule_.next());
    }

    /// Zero disarms.
    void arm(Time moment) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
        itimerspec when{};
        when.it_value.tv_sec = seconds.count();
        when.it_value.tv_nsec = (moment - seconds).count();
        ::timerfd_settime(fd_.get(), TFD_TIMER_ABSTIME, &when, nullptr);
    }

    FdWatcher& watcher_;
    std::shared_ptr<Shared> shared_;
    runtime::StepSchedule schedule_;
    FileDescriptor fd_;
    std::unique_ptr<FdWatch> watch_;
};

} // namespace

std::unique_ptr<platform::PeriodicTimer> Timers::create(std::function<void()> tick) {
    return std::make_unique<KernelTimer>(watcher_, std::move(tick));
}

} // namespace linux_ports
