#include "form/timer.h"

namespace form {

Timer::Timer(Form& form, std::string name, platform::Timers& timers, int interval)
    : Control(form, std::move(name)), Interval(*this, interval),
      clock_(timers.create([this] { Tick.fire(); })) {}

void Timer::propertyChanged(const void* property) {
    if (property != &Interval && property != &Enabled) return;
    if (Enabled && Interval > 0) {
        clock_->start(Interval);
    } else {
        clock_->stop();
    }
}

} // namespace form
