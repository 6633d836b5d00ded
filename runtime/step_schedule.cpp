#include "runtime/step_schedule.h"

#include <algorithm>

namespace runtime {

void StepSchedule::start(Time now, Time interval) {
    interval_ = interval;
    ideal_ = next_ = now + interval;
    lost_ = 0;
}

void StepSchedule::ticked(Time now) {
    const Time late = now - ideal_;
    if (late > kLongestBacklog * interval_) {
        lost_ += static_cast<std::uint64_t>(late / interval_);
        ideal_ = now;
    }
    ideal_ += interval_;
    next_ = std::max(ideal_, now + interval_ * 9 / 10);
}

} // namespace runtime
