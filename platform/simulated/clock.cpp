#include "platform/simulated/clock.h"

#include "runtime/step_schedule.h"

#include <algorithm>
#include <tuple>

namespace simulated {

class Clock::Timer : public platform::PeriodicTimer {
  public:
    Timer(Clock& clock, std::function<void()> tick) : clock_(clock), tick_(std::move(tick)) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override { halt(); }

    void start(std::chrono::nanoseconds period) override {
        halt();
        schedule_.start(clock_.now_, period);
        order_ = clock_.starts_++;
        clock_.running_.push_back(this);
    }
    void setPeriod(std::chrono::nanoseconds period) override { schedule_.setInterval(clock_.now_, period); }
    void stop() override { halt(); }
    std::chrono::nanoseconds untilTick() const override { return schedule_.next() - clock_.now_; }

    std::pair<std::chrono::nanoseconds, std::uint64_t> rank() const { return {due(), order_}; }
    std::chrono::nanoseconds due() const { return schedule_.next(); }
    void tick() {
        schedule_.ticked(clock_.now_);
        tick_();
    }

  private:
    void halt() { std::erase(clock_.running_, this); }

    Clock& clock_;
    std::function<void()> tick_;
    runtime::StepSchedule schedule_;
    std::uint64_t order_ = 0;
};

std::unique_ptr<platform::PeriodicTimer> Clock::create(std::function<void()> tick) {
    return std::make_unique<Timer>(*this, std::move(tick));
}

Clock::Timer* Clock::earliest() const {
    const auto found = std::min_element(running_.begin(), running_.end(),
                                        [](const Timer* a, const Timer* b) { return a->rank() < b->rank(); });
    return found == running_.end() ? nullptr : *found;
}

void Clock::advance(std::chrono::nanoseconds time) {
    const auto end = now_ + time;
    for (Timer* next = earliest(); next && next->due() <= end; next = earliest()) {
        now_ = std::max(now_, next->due());
        next->tick();
    }
    now_ = std::max(now_, end);
}

} // namespace simulated
