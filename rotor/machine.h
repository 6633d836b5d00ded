#pragma once

#include "engine/side.h"
#include "rotor/follower.h"

/// The axes of the rotator, computed from the engines' state and parameters.
namespace rotor {

/// Degrees of one step; above 0 even if the user has entered no parameters.
double stepOf(const engine::Side& side);
/// Degrees per second at the fast speed, or at the slow speed if there is no fast speed; above 0.
double speedOf(const engine::Side& side);
AxisState axisOf(const engine::Side& side);

} // namespace rotor
