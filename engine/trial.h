#pragma once

#include "form/engine_panel.h"

/// What the trials of a set-up tell about an engine.
namespace engine {

/// A trial of the speeds begins at this period of a step and goes down to 1 ms, in whole milliseconds.
constexpr int kTrialSlowest = 20;

/// The speed in steps per second that is safe for a motor that stopped following at `period` milliseconds a
/// step (1 and more): its period is a whole number of milliseconds, and at least one and a half times as
/// long.
int safeSpeed(int period);

/// The units per revolution of an engine that was asked to move by `asked` and moved by `measured`. Unless
/// the engine `takesFractions`, they are a whole number, at least 1. Precondition: none of the arguments is
/// 0.
float correctedUnits(float units, float asked, float measured, bool takesFractions);

} // namespace engine
