#include "engine/trial.h"

#include "runtime/number.h"

#include <algorithm>
#include <cmath>

namespace engine {

int safeSpeed(int period) {
    constexpr int kMillisecondsPerSecond = 1000;
    const int safe = (3 * period + 1) / 2;
    return kMillisecondsPerSecond / safe;
}

float correctedUnits(float units, float asked, float measured, bool takesFractions) {
    const double corrected = double{units} * std::fabs(double{measured} / asked);
    if (takesFractions) return runtime::toSingle(corrected);
    return runtime::toSingle(std::copysign(std::max(1.0, std::round(std::fabs(corrected))), corrected));
}

} // namespace engine
