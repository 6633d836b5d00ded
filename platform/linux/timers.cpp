#include "platform/linux/timers.h"

#include "runtime/errors.h"
#include "runtime/step_schedule.h"

#include <algorithm>
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

} // namespace

class Timers::Timer : public platform::PeriodicTimer {
  public:
    Timer(Timers& owner, std::function<void()> tick)
        : owner_(owner), shared_(std::make_shared<Shared>(Shared{.tick = std::move(tick)})) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override { halt(); }

    void start(Time period) override {
        halt();
        schedule_.start(now(), period);
        owner_.running_.push_back(this);
        owner_.arm();
    }

    void setPeriod(Time period) override {
        schedule_.setInterval(now(), period);
        owner_.arm();
    }

    void stop() override { halt(); }

    Time untilTick() const override { return due() - now(); }

    Time due() const { return schedule_.next(); }

    void tick() {
        schedule_.ticked(now());
        // Set the timer before the tick: a tick that opens a box must not stop the following ticks.
        owner_.arm();
        const auto shared = shared_;
        const auto turn = ++shared->turns;
        shared->tick();
        const bool isStillLast = shared->turns == turn;
        if (!isStillLast) return;
        schedule_.finished(now());
        owner_.arm();
    }

  private:
    /// Outlives the timer if a tick destroys the timer.
    struct Shared {
        std::function<void()> tick;
        std::uint64_t turns = 0; // ticks, starts, stops and the end of the timer
    };

    void halt() {
        ++shared_->turns;
        std::erase(owner_.running_, this);
    }

    Timers& owner_;
    std::shared_ptr<Shared> shared_;
    runtime::StepSchedule schedule_;
};

Timers::Timers(FdWatcher& watcher) : fd_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (!fd_) throw runtime::ObjectError("Cannot create a timer: " + reason(errno));
    watch_ = watcher.watch(fd_.get(), [this] { expired(); });
}

std::unique_ptr<platform::PeriodicTimer> Timers::create(std::function<void()> tick) {
    return std::make_unique<Timer>(*this, std::move(tick));
}

Timers::Timer* Timers::earliest() const {
    const auto found = std::ranges::min_element(running_, {}, &Timer::due);
    return found == running_.end() ? nullptr : *found;
}

/// After a timer has stopped, the kernel timer may expire for nothing; this costs less than setting it again.
void Timers::arm() {
    const Timer* first = earliest();
    if (!first || first->due() == armed_) return;
    armed_ = first->due();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(armed_);
    itimerspec when{};
    when.it_value.tv_sec = seconds.count();
    when.it_value.tv_nsec = (armed_ - seconds).count();
    ::timerfd_settime(fd_.get(), TFD_TIMER_ABSTIME, &when, nullptr);
}

void Timers::expired() {
    std::uint64_t expirations = 0;
    if (::read(fd_.get(), &expirations, sizeof expirations) != sizeof expirations) return;
    armed_ = {};
    // At most one tick for each timer: the event loop has other work.
    for (std::size_t left = running_.size(); left > 0; --left) {
        Timer* first = earliest();
        if (!first || first->due() > now()) break;
        first->tick();
    }
    arm();
}

} // namespace linux_ports
