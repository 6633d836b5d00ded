#include "engine/backlash.h"

#include <algorithm>

namespace engine {

void Backlash::setPlay(int play) {
    play_ = std::max(play, 0);
    taken_ = 0;
}

void Backlash::stepped(int direction) {
    taken_ = std::clamp(taken_ + direction, 0, play_);
    down_ = direction < 0;
}

int Backlash::dip(int steps, int floor) const {
    const bool fromBelow = steps >= play_ - taken_ && steps > 0;
    if (steps == 0 || play_ == 0 || fromBelow) return steps;
    // The first leg never goes above the target and never upwards. A target below the floor is not raised to
    // the floor.
    return std::min({steps, 0, std::max(steps - play_, floor)});
}

} // namespace engine
