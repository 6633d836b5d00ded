#include "runtime/step_schedule.h"

#include <algorithm>

namespace runtime {

void StepSchedule::start(Time now, Time interval) {
    interval_ = interval;
    ideal_ = next_ = now + interval;
    began_ = now;
    usual_ = Time::zero();
}

void StepSchedule::setInterval(Time now, Time interval) {
    const Time overdue = std::max(now - (began_ + interval), Time::zero());
    ideal_ += interval - interval_ + overdue;
    interval_ = interval;
    next_ = std::max(ideal_, began_ + shortest() + overdue);
}

void StepSchedule::ticked(Time now) {
    const Time late = now - ideal_;
    if (now - next_ > kLongestStall * interval_ || late > kLongestBacklog * interval_) ideal_ = now;
    ideal_ += interval_;
    next_ = std::max(ideal_, now + shortest());
    began_ = now;
}

void StepSchedule::finished(Time now) {
    const Time rise = interval_ / 100;
    usual_ = std::min(now - began_, usual_ + rise);
    next_ = std::max(next_, now + shortest() - usual_);
}

} // namespace runtime
