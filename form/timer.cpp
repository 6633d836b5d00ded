#include "form/timer.h"

namespace form {

Timer::Timer(Form& form, std::string name, platform::Timers& timers, int interval)
    : Control(form, std::move(name)), Interval(*this, interval),
      clock_(timers.create([this] { Tick.fire(); })) {}

void Timer::propertyChanged(const void* property) {
    if (property != &Interval && property != &Enabled) return;
    if (Enabled && Interval > 0) {
        period_ = std::chrono::milliseconds(Interval);
        clock_->start(period_);
    } else {
        period_ = {};
        clock_->stop();
    }
}

void Timer::setPeriod(std::chrono::nanoseconds period) {
    if (period_ == period_.zero() || period == period_) return;
    period_ = period;
    clock_->setPeriod(period);
}

} // namespace form
