#include "platform/simulated/clock.h"

#include <algorithm>
#include <tuple>

namespace simulated {

class Clock::Timer : public platform::PeriodicTimer {
  public:
    Timer(Clock& clock, std::function<void()> tick) : clock_(clock), tick_(std::move(tick)) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override { halt(); }

    void start(int milliseconds) override {
        halt();
        interval_ = milliseconds;
        due_ = clock_.now_ + interval_;
        order_ = clock_.starts_++;
        clock_.running_.push_back(this);
    }
    void stop() override { halt(); }

    std::pair<std::int64_t, std::uint64_t> rank() const { return {due_, order_}; }
    std::int64_t due() const { return due_; }
    void tick() {
        due_ += interval_;
        tick_();
    }

  private:
    void halt() { std::erase(clock_.running_, this); }

    Clock& clock_;
    std::function<void()> tick_;
    std::int64_t interval_ = 0;
    std::int64_t due_ = 0;
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

void Clock::advance(int milliseconds) {
    const std::int64_t end = now_ + milliseconds;
    for (Timer* next = earliest(); next && next->due() <= end; next = earliest()) {
        now_ = std::max(now_, next->due());
        next->tick();
    }
    now_ = std::max(now_, end);
}

} // namespace simulated
