#pragma once

namespace form {

/// The direction of an antenna, in degrees: azimuth clockwise from north, elevation above the horizon. With
/// an elevation above 90 degrees the antenna is flipped ("on its back") and points to azimuth + 180.
struct Direction {
    double azimuth = 0;
    double elevation = 0;
    bool operator==(const Direction&) const = default;
};

} // namespace form
