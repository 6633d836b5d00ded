#pragma once

#include "engine/side.h"
#include "rotor/follower.h"

/// The axes of the machine, as the engines' state and parameters have them.
namespace rotor {

/// Degrees of one step; above 0, also where none has been entered.
double stepOf(const engine::Side& side);
/// Degrees per second at the fast speed, or at the slow one where no fast one is entered; above 0.
double speedOf(const engine::Side& side);
AxisState axisOf(const engine::Side& side);

} // namespace rotor
