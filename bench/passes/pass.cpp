#include "bench/passes/pass.h"

#include <cmath>
#include <numbers>

namespace passes {

namespace {

constexpr double kRadian = 180 / std::numbers::pi;   // degrees
constexpr double kEarth = 6371, kOrbit = 6371 + 600; // km
constexpr double kRate = 360 / 5800.0;               // degrees a second, one turn in 97 minutes
constexpr double kBelow = -10; // degrees of elevation at which the source begins to count

/// A number from -1 to 1 that looks like chance and is the same in each run.
double chance(int number) {
    const double wave = std::sin(number * 12.9898) * 43758.5453;
    return 2 * (wave - std::floor(wave)) - 1;
}

} // namespace

const std::vector<Pass> kPasses = {
    {"north, eastward", 90, 9},
    {"north, westward", 270, -9},
    {"south, eastward", 90, -9},
    {"low in the west", 0, 18},
    {"beside the zenith", 30, 0.9},
    {"over the zenith", 10, 0.02},
    {"north, jittering source", 90, 6, 0.15},
    {"north, source dies", 90, 7, 0, 250},
};

rotor::Direction at(const Pass& pass, double seconds) {
    const double along = seconds * kRate / kRadian;
    const double aside = pass.aside / kRadian;
    const double heading = pass.heading / kRadian;
    // East, north and up of the station, in km: ahead is along the heading, left is across it.
    const double ahead = kOrbit * std::sin(along);
    const double left = kOrbit * std::cos(along) * std::sin(aside);
    const double up = kOrbit * std::cos(along) * std::cos(aside) - kEarth;
    const double east = ahead * std::sin(heading) - left * std::cos(heading);
    const double north = ahead * std::cos(heading) + left * std::sin(heading);
    const double azimuth = std::atan2(east, north) * kRadian;
    return {azimuth < 0 ? azimuth + 360 : azimuth, std::atan2(up, std::hypot(east, north)) * kRadian};
}

double halfLength(const Pass& pass) {
    double seconds = 0;
    while (at(pass, seconds).elevation > kBelow)
        seconds += 1;
    return seconds;
}

std::optional<rotor::Direction> received(const Pass& pass, int second) {
    constexpr int kDead = 40; // seconds
    if (pass.diesAt > 0 && second >= pass.diesAt && second < pass.diesAt + kDead) return std::nullopt;
    rotor::Direction place = at(pass, second - halfLength(pass));
    place.azimuth = std::fmod(place.azimuth + pass.jitter * chance(second) + 360, 360);
    place.elevation += pass.jitter * chance(second + 5000);
    return place;
}

} // namespace passes
