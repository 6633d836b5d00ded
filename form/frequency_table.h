#pragma once

#include <cstddef>
#include <vector>

namespace form {

/// Where both engines stand at a frequency.
struct TableEntry {
    double megahertz = 0;
    double posA = 0, posB = 0; // user units
    bool endsStretch = false;  // nothing is interpolated between this entry and the next
    bool operator==(const TableEntry&) const = default;
};

/// Entries by rising frequency, each frequency once, at most kTableEntriesMax of them.
using FrequencyTable = std::vector<TableEntry>;
constexpr std::size_t kTableEntriesMax = 200;

/// How positions run between two entries of a stretch.
enum class TableCurve { kLinear, kMonotoneCubic };

} // namespace form
