#pragma once

#include "form/frequency_table.h"

namespace form {

/// What is set for the tuner functions beside "save.cfg".
struct TunerSettings {
    bool useTable = false;     // recalls come from the frequency table, not from the ten memories
    bool exact = false;        // the memory nearest in frequency is recalled, not the first of its band
    int exactKilohertz = 5;    // how near it has to be, 1 to 1000
    int semiAutoKilohertz = 1; // a change of frequency that ends "Semi Auto", 0 to 1000
    bool waitWhileTransmitting = true;
    TableCurve curve = TableCurve::kLinear;
    int leastMove = 1; // steps, 0 to 1000: the table leaves smaller moves out
    int backlash1 = 0; // steps of play of engine 1, 0 to 10000
    int backlash2 = 0;
    bool operator==(const TunerSettings&) const = default;
};

} // namespace form
