#include "platform/simulated/clock.h"

#include <algorithm>
#include <utility>

namespace simulated {

void Clock::advance(Time time) {
    const auto end = now_ + time;
    while (alarm_ <= end) {
        now_ = std::max(now_, std::exchange(alarm_, Time::max()));
        expired();
    }
    now_ = std::max(now_, end);
}

} // namespace simulated
