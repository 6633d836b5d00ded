#include "rotor/machine.h"

#include <cmath>

namespace rotor {

double stepOf(const engine::Side& side) {
    const int steps = side.intSteps.value() * side.bytMolt.value();
    const double step = steps == 0 ? 0 : std::fabs(double{side.sngMMGiro} / steps);
    return step > 0 ? step : 1;
}

AxisState axisOf(const engine::Side& side) {
    const auto upwards = [&](int direction) { return side.ascends(direction) ? 1 : -1; };
    AxisState axis{side.sngPosRotor, stepOf(side), 0, 0};
    if (side.running()) axis.running = upwards(side.forward.Enabled ? form::kForward : form::kBackward);
    if (side.intDir == form::kForward || side.intDir == form::kBackward)
        axis.last = upwards(side.intDir.value());
    return axis;
}

double speedOf(const engine::Side& side) {
    const int period = side.intTickAlta > 0 ? side.intTickAlta.value() : side.intTickBassa.value();
    constexpr double kMillisecondsPerSecond = 1000;
    return period > 0 ? stepOf(side) * kMillisecondsPerSecond / period : 1;
}

} // namespace rotor
