#pragma once

#include "form/form1.h"

#include <string>

namespace rotor {

/// Values of intSatSource: the program whose format the tracking text has.
enum TrackingProgram { kOrbitron = 1, kSatPc32 = 2 };

/// Puts one line of tracking text into the labels of received azimuth and elevation, offsets added. A line
/// that is malformed in Orbitron's format leaves the labels as they were at the failing step, in SatPC32's
/// as they were before. True when a whole new target stands there.
bool subSatData(form::Form1& form, const std::string& text);

/// The text that SatPC32 puts into its DDE item: "SNname AZ123.4 EL45.6 UP0 …". Malformed, it changes
/// nothing. True when a whole new target stands there.
bool readSatPc32Item(form::Form1& form, const std::string& text);

/// Puts azimuth and elevation, numbers as a program words them, into the labels that are followed, offsets
/// added. Throws runtime::RunTimeError for a text that is no number, with nothing changed.
void showReceived(form::Form1& form, const std::string& azimuth, const std::string& elevation);

} // namespace rotor
