#include "memory/frequency_table.h"

#include "runtime/errors.h"

#include <algorithm>
#include <cmath>

namespace memory {

namespace {

using form::FrequencyTable;
using form::TableEntry;
using Position = double TableEntry::*;

bool isLower(const TableEntry& entry, double megahertz) {
    return entry.megahertz < megahertz;
}

/// Rise of a position between entry `lower` and the next one, in units per MHz.
double slope(const FrequencyTable& table, std::size_t lower, Position position) {
    const TableEntry& from = table[lower];
    const TableEntry& to = table[lower + 1];
    return (to.*position - from.*position) / (to.megahertz - from.megahertz);
}

/// Whether there is a curve from entry `lower` to the next one. Frequencies that were told apart by digits
/// that are lost stand twice.
bool interpolates(const FrequencyTable& table, std::size_t lower) {
    return !table[lower].endsStretch() && table[lower].megahertz < table[lower + 1].megahertz;
}

/// The curve's rise at entry `index`: the harmonic mean of the slopes on both sides, weighted by their
/// lengths, and level where these differ in sign. At an end of a stretch the slope of its only side.
double tangent(const FrequencyTable& table, std::size_t index, Position position) {
    const bool hasLower = index > 0 && interpolates(table, index - 1);
    const bool hasUpper = index + 1 < table.size() && interpolates(table, index);
    if (!hasLower || !hasUpper) return slope(table, hasUpper ? index : index - 1, position);
    const double below = slope(table, index - 1, position);
    const double above = slope(table, index, position);
    if (below * above <= 0) return 0;
    const double lengthBelow = table[index].megahertz - table[index - 1].megahertz;
    const double lengthAbove = table[index + 1].megahertz - table[index].megahertz;
    const double weightBelow = 2 * lengthAbove + lengthBelow;
    const double weightAbove = lengthAbove + 2 * lengthBelow;
    return (weightBelow + weightAbove) / (weightBelow / below + weightAbove / above);
}

double between(const FrequencyTable& table, std::size_t lower, double megahertz, form::TableCurve curve,
               Position position) {
    const TableEntry& from = table[lower];
    const TableEntry& to = table[lower + 1];
    const double length = to.megahertz - from.megahertz;
    const double t = (megahertz - from.megahertz) / length;
    if (curve == form::TableCurve::kLinear) return std::lerp(from.*position, to.*position, t);
    // The cubic with the given values and tangents at both ends.
    const double rest = 1 - t;
    const double value =
        rest * rest * (1 + 2 * t) * from.*position + t * t * (3 - 2 * t) * to.*position +
        length * t * rest *
            (rest * tangent(table, lower, position) - t * tangent(table, lower + 1, position));
    const auto [low, high] = std::minmax(from.*position, to.*position);
    return std::clamp(value, low, high); // what rounding adds
}

} // namespace

FrequencyTable byFrequency(FrequencyTable entries) {
    std::ranges::stable_sort(entries, {}, &TableEntry::megahertz);
    return entries;
}

FrequencyTable sorted(FrequencyTable entries) {
    entries = byFrequency(std::move(entries));
    FrequencyTable table;
    for (const TableEntry& entry : entries) {
        if (!table.empty() && table.back().megahertz == entry.megahertz) table.pop_back();
        table.push_back(entry);
    }
    if (std::ssize(table) > form::kTableEntriesMax) throw runtime::SubscriptError();
    return table;
}

std::size_t put(FrequencyTable& table, const TableEntry& entry) {
    auto place = std::lower_bound(table.begin(), table.end(), entry.megahertz, isLower);
    if (place != table.end() && place->megahertz == entry.megahertz) {
        *place = entry;
    } else {
        if (std::ssize(table) >= form::kTableEntriesMax) throw runtime::SubscriptError();
        place = table.insert(place, entry);
    }
    return static_cast<std::size_t>(place - table.begin());
}

std::optional<TablePositions> positionsAt(const FrequencyTable& table, double megahertz,
                                          form::TableCurve curve) {
    const auto upper = std::lower_bound(table.begin(), table.end(), megahertz, isLower);
    if (upper == table.end()) return std::nullopt;
    if (upper->megahertz == megahertz) return TablePositions{upper->posA, upper->posB};
    if (upper == table.begin() || std::prev(upper)->endsStretch()) return std::nullopt;
    const auto lower = static_cast<std::size_t>(upper - table.begin() - 1);
    return TablePositions{between(table, lower, megahertz, curve, &TableEntry::posA),
                          between(table, lower, megahertz, curve, &TableEntry::posB)};
}

std::optional<std::size_t> nearestEntry(const FrequencyTable& table, double megahertz) {
    if (table.empty()) return std::nullopt;
    const auto upper = std::lower_bound(table.begin(), table.end(), megahertz, isLower);
    const auto index = static_cast<std::size_t>(upper - table.begin());
    if (index == 0) return 0;
    if (index == table.size()) return index - 1;
    return megahertz - table[index - 1].megahertz <= table[index].megahertz - megahertz ? index - 1 : index;
}

} // namespace memory
