#pragma once

#include "form/direction.h"

namespace rotor {

using form::Direction;

/// The ranges of the rotator, in degrees, limits included.
struct Ranges {
    double azimuthMin = 0, azimuthMax = 360;    // from -180 up to 360 at most
    double elevationMin = 0, elevationMax = 90; // up to 180
    bool operator==(const Ranges&) const = default;
};

/// The angle between two directions on the sky, 0 to 180 degrees.
double arc(const Direction& a, const Direction& b);

} // namespace rotor
