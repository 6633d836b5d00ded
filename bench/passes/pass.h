#pragma once

#include "rotor/direction.h"

#include <optional>
#include <string>
#include <vector>

namespace passes {

/// A satellite on a circular orbit, as a station sees it, and what its source makes of it.
struct Pass {
    std::string name;
    double heading;    // degrees: where it flies to
    double aside;      // degrees of the Earth's arc by which it passes the station on its left; below 0 right
    double jitter = 0; // degrees, either way, in each line
    double diesAt = 0; // seconds after its rise at which the source falls silent for 40 s; 0: never
};

extern const std::vector<Pass> kPasses;

/// Where the satellite stands so many seconds before (below 0) or after it is nearest. Elevation may be below
/// 0.
rotor::Direction at(const Pass& pass, double seconds);
/// Seconds from its rise above -10 degrees to the nearest point.
double halfLength(const Pass& pass);
/// The line that the source sends so many seconds after that rise, once a second; nothing while it is dead.
std::optional<rotor::Direction> received(const Pass& pass, int second);

} // namespace passes
