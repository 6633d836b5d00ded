#pragma once

#include "bench/passes/run.h"

#include <string>

namespace passes {

/// Azimuth and elevation of target, antenna and plain follower over time, as an SVG picture.
std::string plot(const Result& result);

} // namespace passes
