#include "platform/schedule/scheduled_timers.h"

#include "runtime/step_schedule.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace schedule {

class ScheduledTimers::Timer : public platform::PeriodicTimer {
  public:
    Timer(ScheduledTimers& owner, std::function<void()> tick)
        : owner_(owner), shared_(std::make_shared<Shared>(Shared{.tick = std::move(tick)})) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override { halt(); }

    void start(Time period) override {
        halt();
        schedule_.start(owner_.now(), period);
        owner_.running_.push_back(this);
        owner_.arm();
    }

    void setPeriod(Time period) override {
        schedule_.setInterval(owner_.now(), period);
        owner_.arm();
    }

    void stop() override { halt(); }

    Time untilTick() const override { return due() - owner_.now(); }

    Time due() const { return schedule_.next(); }

    void tick() {
        schedule_.ticked(owner_.now());
        // Set the timer before the tick: a tick that opens a box must not stop the following ticks.
        owner_.arm();
        const auto shared = shared_;
        const auto turn = ++shared->turns;
        shared->tick();
        const bool isStillLast = shared->turns == turn;
        if (!isStillLast) return;
        schedule_.finished(owner_.now());
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

    ScheduledTimers& owner_;
    std::shared_ptr<Shared> shared_;
    runtime::StepSchedule schedule_;
};

std::unique_ptr<platform::PeriodicTimer> ScheduledTimers::create(std::function<void()> tick) {
    return std::make_unique<Timer>(*this, std::move(tick));
}

ScheduledTimers::Timer* ScheduledTimers::earliest() const {
    const auto found = std::ranges::min_element(running_, {}, &Timer::due);
    return found == running_.end() ? nullptr : *found;
}

/// After a timer has stopped, the alarm may go off for nothing; this costs less than setting it again.
void ScheduledTimers::arm() {
    const Timer* first = earliest();
    if (!first || first->due() == armed_) return;
    armed_ = first->due();
    setAlarm(armed_);
}

void ScheduledTimers::expired() {
    armed_ = {};
    // At most one tick for each timer: the event loop has other work.
    for (std::size_t left = running_.size(); left > 0; --left) {
        Timer* first = earliest();
        if (!first || first->due() > now()) break;
        first->tick();
    }
    arm();
}

} // namespace schedule
