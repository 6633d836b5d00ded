#pragma once

#include "bench/passes/pass.h"

#include <map>
#include <string>
#include <vector>

namespace passes {

/// A rotator and how it is set: 0.045 degrees a step, 2.25 degrees a second slow, 9 fast.
struct Rotator {
    std::string name;
    std::string azimuth, elevation; // as in the settings
    int ramp;                       // HScroll1
};

extern const std::vector<Rotator> kRotators;

struct Sample {
    double seconds;
    rotor::Direction target, antenna, plain;
};

/// What a follower did in a pass.
struct Work {
    double travel = 0; // degrees, both axes
    int starts = 0;
};

struct Result {
    double furthest = 0;                   // degrees from the last target, within the bound
    double bound = 0;                      // at that moment
    int broken = 0;                        // moments, 20 ms each, at which the claim did not hold
    std::map<std::string, double> excused; // seconds beyond the bound, by reason
    Work program, plain;
    std::vector<Sample> samples; // once a second
};

/// The program follows the pass in virtual time, and beside it a follower that obeys each target at once.
Result run(const Pass& pass, const Rotator& rotator);

} // namespace passes
