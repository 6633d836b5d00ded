#pragma once

#include "form/form1.h"

#include <string>

namespace rotor {

/// Values of intSatSource: the program whose format the tracking text has.
enum TrackingProgram { kOrbitron = 1, kSatPc32 = 2 };

/// Shows one line of tracking text in the labels of received azimuth and elevation, offsets added. An invalid
/// line in Orbitron's format keeps the labels that were set before the invalid token; in SatPC32's format it
/// changes no label. Returns true if the labels hold a new complete target.
bool subSatData(form::Form1& form, const std::string& text);

/// Reads the text of SatPC32's DDE item: "SNname AZ123.4 EL45.6 UP0 …". An invalid text changes nothing.
/// Returns true if the labels hold a new complete target.
bool readSatPc32Item(form::Form1& form, const std::string& text);

/// Shows azimuth and elevation in the target labels, offsets added. The texts are numbers as the program sent
/// them. If a text is not a number, changes nothing and throws runtime::RunTimeError.
void showReceived(form::Form1& form, const std::string& azimuth, const std::string& elevation);

} // namespace rotor
