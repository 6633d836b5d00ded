#pragma once

#include <vector>

namespace form {

/// Where both engines stand at a frequency.
struct TableEntry {
    double megahertz = 0;
    double posA = 0, posB = 0; // user units
    double fourth = 0;         // the fourth column; values of other programs are kept, and mean 0
    /// Whether nothing is interpolated between this entry and the next.
    bool endsStretch() const { return fourth == 1; }
    bool operator==(const TableEntry&) const = default;
};

/// At most kTableEntriesMax entries by rising frequency. Some coincide only where digits were lost.
using FrequencyTable = std::vector<TableEntry>;
constexpr int kTableEntriesMax = 200;

/// How positions run between two entries of a stretch.
enum class TableCurve { kLinear, kMonotoneCubic };

} // namespace form
