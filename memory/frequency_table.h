#pragma once

#include "form/frequency_table.h"

#include <optional>

/// The high-resolution table: positions of both engines over the frequency.
namespace memory {

struct TablePositions {
    double a, b; // user units
    bool operator==(const TablePositions&) const = default;
};

/// Sorts the entries by frequency.
form::FrequencyTable byFrequency(form::FrequencyTable entries);

/// The same, where of those of the same frequency the last one stays. SubscriptError when
/// more than kTableEntriesMax are left.
form::FrequencyTable sorted(form::FrequencyTable entries);

/// Inserts the entry, or replaces the one of its frequency; returns its index. SubscriptError when the table
/// is full.
std::size_t put(form::FrequencyTable& table, const form::TableEntry& entry);

/// The positions at a frequency in MHz: those of its entry, or between two entries of a stretch those of the
/// curve. The monotone cubic never leaves the range of the two entries (Fritsch and Carlson, "Monotone
/// Piecewise Cubic Interpolation", SIAM J. Numer. Anal. 17 (1980)). Nothing outside all stretches.
std::optional<TablePositions> positionsAt(const form::FrequencyTable& table, double megahertz,
                                          form::TableCurve curve);

/// The entry nearest to a frequency in MHz; the lower one of two that are equally near. Nothing in an empty
/// table.
std::optional<std::size_t> nearestEntry(const form::FrequencyTable& table, double megahertz);

} // namespace memory
