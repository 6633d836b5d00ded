#pragma once

namespace rotor {

/// The direction of an antenna, in degrees: azimuth clockwise from north, elevation above the horizon. With
/// an elevation above 90 degrees the antenna is flipped ("on its back") and points to azimuth + 180.
struct Direction {
    double azimuth = 0;
    double elevation = 0;
    bool operator==(const Direction&) const = default;
};

/// The ranges of the rotator, in degrees, limits included.
struct Ranges {
    double azimuthMin = 0, azimuthMax = 360;    // from -180 up to 360 at most
    double elevationMin = 0, elevationMax = 90; // up to 180
    bool operator==(const Ranges&) const = default;
};

/// The angle between two directions on the sky, 0 to 180 degrees.
double arc(const Direction& a, const Direction& b);

} // namespace rotor
