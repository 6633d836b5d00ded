#include "engine/increment.h"

#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {
/// Positions are sums of rounded steps: the target lies so much before its step. No larger, so that the two
/// decimals of the target are those of the step.
constexpr double kSlack = 0.004;
} // namespace

double increment(const Side& side) {
    const int chosen = side.cmbJog.ListIndex;
    if (chosen == 0) return 0;
    const std::vector<std::string>& list = side.cmbJog.List;
    const auto index = static_cast<std::size_t>(chosen);
    return index + 1 == list.size() ? stepDistance(side) : runtime::leadingNumber(list.at(index));
}

IncrementalMove incrementalMove(double from, double distance, double step, bool up) {
    const double steps = std::max(1.0, std::round(distance / step));
    const double sign = up ? 1 : -1;
    const double goal = from + sign * steps * step;
    return {goal, runtime::toSingle(goal - sign * std::min(step / 2, kSlack))};
}

} // namespace engine
