#pragma once

#include "form/frequency_table.h"

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

/// The table as text: the file "HiResMem.txt", what a spreadsheet exports, and the records of "save.cfg".
namespace memory {

/// A line that is no entry; the text names its number and what is wrong with it.
struct TableTextError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The file beside "save.cfg" that keeps the table with all its digits.
inline constexpr const char* kTableFile = "HiResMem.txt";

/// One line an entry: frequency in MHz, both positions, and 1 where the entry ends a stretch, 0 otherwise,
/// separated by tabulators, with the shortest digits that read back as the same numbers. A fourth column of
/// another program stays.
std::string tableText(const form::FrequencyTable& table);

/// Reads lines of three or four columns (the fourth is 0 where it is missing), separated by tabulators,
/// semicolons or blanks, numbers with a point or a comma; '#' begins a comment. The last line of a frequency
/// counts. TableTextError for a line that is no entry, and for too many.
form::FrequencyTable readTable(std::string_view text);

/// The same for what stands beside the records, which may hold any numbers and a frequency more than once:
/// all lines that can be read. `fault` names the first other one; it is empty if there is none.
form::FrequencyTable readKeptTable(std::string_view text, std::string& fault);

/// What is wrong with an entry, in a few words; empty when it can be kept. Frequencies are above 0 and below
/// 10,000 MHz, positions from -999 to 999.
std::string faultOf(const form::TableEntry& entry);

/// The four record texts of an entry: the first six characters of each number's decimal text, which begins
/// with a blank, or with a minus sign.
std::array<std::string, 4> recordTexts(const form::TableEntry& entry);

/// The entries of the records, with the full digits of those entries of the file that agree with them in all
/// record texts. Both tables are sorted, but frequencies of `records` may repeat.
form::FrequencyTable withFullDigits(form::FrequencyTable records, const form::FrequencyTable& file);

} // namespace memory
