#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"

#include <cstdint>
#include <string>

namespace radio {

/// The amateur band of a frequency, "20 m"; empty outside all bands. The widest limits of the three regions
/// (ITU Radio Regulations, Article 5).
std::string amateurBand(std::int64_t hertz);

/// Shows unit, band and age beside the frequency, and dims a frequency that is not current. `source` is the
/// chosen program, null for none.
void showFrequencyNote(form::Form1& form, const form::FrequencySource* source);

} // namespace radio
