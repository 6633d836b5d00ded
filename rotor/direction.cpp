#include "rotor/direction.h"

#include <array>
#include <cmath>
#include <numbers>

namespace rotor {

namespace {

constexpr double kRadian = 180 / std::numbers::pi; // degrees

std::array<double, 3> vector(const Direction& direction) {
    const double azimuth = direction.azimuth / kRadian;
    const double elevation = direction.elevation / kRadian;
    return {std::cos(elevation) * std::sin(azimuth), std::cos(elevation) * std::cos(azimuth),
            std::sin(elevation)};
}

} // namespace

double arc(const Direction& a, const Direction& b) {
    // Computed from the chord: unlike the cosine, it is exact for small angles.
    const auto u = vector(a);
    const auto v = vector(b);
    const double apart = std::hypot(u[0] - v[0], u[1] - v[1], u[2] - v[2]);
    const double across = std::hypot(u[0] + v[0], u[1] + v[1], u[2] + v[2]);
    return 2 * std::atan2(apart, across) * kRadian;
}

} // namespace rotor
