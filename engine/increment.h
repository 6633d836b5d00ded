#pragma once

#include "engine/side.h"

namespace engine {

/// How far a press of a jog button or key moves the engine, in units of its position, as chosen in cmbJog; 0:
/// it runs while it is held.
double increment(const Side& side);

/// A move by whole steps.
struct IncrementalMove {
    double goal;  // in units of the position
    float target; // the step that reaches or passes it is the step at the goal
};

/// The move by `distance` (positive) from `from`, upwards or downwards. Rounded to whole steps of `step`, but
/// at least one. Precondition: `step` is positive.
IncrementalMove incrementalMove(double from, double distance, double step, bool up);

} // namespace engine
