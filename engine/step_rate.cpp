#include "engine/step_rate.h"

#include <cmath>
#include <utility>

namespace engine {

namespace {

constexpr std::chrono::duration<double> kSecond{1};

} // namespace

void StepRate::count(int motor, bool made) {
    Counts& counts = counts_.at(static_cast<std::size_t>(motor - 1));
    ++counts.due;
    if (made) ++counts.made;
}

std::string StepRate::takeText(const Sides& sides, const std::string& device) {
    std::string text;
    for (const Side* side : {&sides.a, &sides.b}) {
        const Counts counts = std::exchange(counts_.at(static_cast<std::size_t>(side->motor - 1)), Counts());
        const form::Timer& timer = side->forward.Enabled ? side->forward : side->backward;
        if (timer.period() == timer.period().zero() || counts.due - counts.made <= 1) continue;
        const double share = static_cast<double>(counts.made) / static_cast<double>(counts.due);
        if (share >= kKeepsUp) continue;
        const double set = kSecond / timer.period();
        text += (text.empty() ? "" : ", ") + side->lblEngine.Caption.get() + ": " +
                std::to_string(std::lround(set * share)) + " of " + std::to_string(std::lround(set));
    }
    return text.empty() ? text : text + " steps/s (" + device + ")";
}

} // namespace engine
