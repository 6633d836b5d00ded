#include "memory/table_text.h"

#include "memory/frequency_table.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace memory {

namespace {

using form::FrequencyTable;
using form::TableEntry;

constexpr std::size_t kRecordCharacters = 6;
constexpr double kHighestMegahertz = 10'000;
constexpr double kFarthest = 999; // user units: the end of run

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// Tabs and semicolons part cells, which may be empty at the end alone; else blanks part them.
std::vector<std::string_view> columnsOf(std::string_view line) {
    const bool cells = line.find_first_of("\t;") != std::string_view::npos;
    const std::string_view separators = cells ? "\t;" : " ";
    std::vector<std::string_view> columns;
    for (line = trimmed(line); !line.empty();) {
        const std::size_t end = std::min(line.find_first_of(separators), line.size());
        const std::string_view column = trimmed(line.substr(0, end));
        if (cells || !column.empty()) columns.push_back(column);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    while (!columns.empty() && columns.back().empty())
        columns.pop_back();
    if (std::ranges::find(columns, std::string_view()) != columns.end())
        throw TableTextError("has an empty cell");
    return columns;
}

TableEntry entryOf(const std::vector<std::string_view>& columns) {
    if (columns.size() < 3 || columns.size() > 4) {
        throw TableTextError("has " + std::to_string(columns.size()) + " columns instead of 3 or 4");
    }
    const auto number = [](std::string_view column) {
        try {
            return runtime::parseNumber(column);
        } catch (const runtime::RunTimeError&) {
            throw TableTextError("\"" + runtime::firstCharacters(column, 20) + "\" is not a number");
        }
    };
    return {number(columns[0]), number(columns[1]), number(columns[2]),
            columns.size() == 4 ? number(columns[3]) : 0};
}

/// Calls `take` with each entry, or `fail` with what is wrong with a line.
template <class Take, class Fail>
void eachEntry(std::string_view text, const Take& take, const Fail& fail) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // what some spreadsheets put first
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        line = line.substr(0, line.find('#'));
        try {
            if (const auto columns = columnsOf(line); !columns.empty()) take(entryOf(columns));
        } catch (const TableTextError& error) {
            fail("Line " + std::to_string(number) + ": " + error.what());
        }
    }
}

std::string recordText(double value) {
    const std::string digits = runtime::shortestText(value);
    return runtime::firstCharacters(value < 0 ? digits : " " + digits, kRecordCharacters);
}

/// Whether the record of `full` reads as `kept`.
bool agrees(const TableEntry& full, const TableEntry& kept) {
    const auto same = [](double value, double record) {
        return runtime::parseSingle(recordText(value)) == runtime::toSingle(record);
    };
    return same(full.megahertz, kept.megahertz) && same(full.posA, kept.posA) && same(full.posB, kept.posB) &&
           same(full.fourth, kept.fourth);
}

} // namespace

std::string tableText(const FrequencyTable& table) {
    std::string text = "# MHz\tA\tB\tend of stretch\n";
    for (const TableEntry& entry : table) {
        for (const double value : {entry.megahertz, entry.posA, entry.posB})
            text += runtime::shortestText(value) + "\t";
        text += runtime::shortestText(entry.fourth) + "\n";
    }
    return text;
}

FrequencyTable readTable(std::string_view text) {
    FrequencyTable entries;
    const auto take = [&](const TableEntry& entry) {
        if (entry.fourth != 0 && entry.fourth != 1) throw TableTextError("the fourth column is not 0 or 1");
        if (const std::string fault = faultOf(entry); !fault.empty()) throw TableTextError(fault);
        entries.push_back(entry);
    };
    eachEntry(text, take, [](const std::string& fault) { throw TableTextError(fault); });
    try {
        return sorted(std::move(entries));
    } catch (const runtime::RunTimeError&) {
        throw TableTextError("More than " + std::to_string(form::kTableEntriesMax) + " entries");
    }
}

FrequencyTable readKeptTable(std::string_view text, std::string& fault) {
    FrequencyTable entries;
    const auto take = [&](const TableEntry& entry) {
        if (std::ssize(entries) == form::kTableEntriesMax) throw TableTextError("the table is full");
        entries.push_back(entry);
    };
    eachEntry(text, take, [&](const std::string& what) {
        if (fault.empty()) fault = what;
    });
    return byFrequency(std::move(entries));
}

std::string faultOf(const TableEntry& entry) {
    if (!(entry.megahertz > 0 && entry.megahertz < kHighestMegahertz)) {
        return "the frequency is not between 0 and 10000 MHz";
    }
    for (const double position : {entry.posA, entry.posB}) {
        if (!(std::fabs(position) <= kFarthest)) return "a position is not between -999 and 999";
    }
    return {};
}

std::array<std::string, 4> recordTexts(const TableEntry& entry) {
    return {recordText(entry.megahertz), recordText(entry.posA), recordText(entry.posB),
            recordText(entry.fourth)};
}

FrequencyTable withFullDigits(FrequencyTable records, const FrequencyTable& file) {
    std::vector<bool> used(file.size());
    for (TableEntry& record : records) {
        for (std::size_t i = 0; i < file.size(); ++i) {
            if (used[i] || !agrees(file[i], record)) continue;
            record = file[i];
            used[i] = true;
            break;
        }
    }
    return byFrequency(std::move(records)); // other digits may have changed the order
}

} // namespace memory
