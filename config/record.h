#pragma once

#include "config/records.h"
#include "runtime/checked.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace config {

constexpr std::size_t kRecordLength = 12;
constexpr std::size_t kTextMax = 10;      // characters of a text record
constexpr std::size_t kTaggedTextMax = 8; // characters of a tagged text record

/// A record to be written: its number, from 1, and its bytes; the bytes after the value are 0.
struct Record {
    int number;
    std::array<char, kRecordLength> bytes{};
};

Record integerRecord(int number, runtime::Int16 value);
/// -1 for true, 0 for false.
Record booleanRecord(int number, bool value);
Record byteRecord(int number, runtime::Byte value);
Record singleRecord(int number, float value);
/// BadRecordLength when the text has more than kTextMax characters.
Record textRecord(int number, std::string_view text);
/// BadRecordLength when the text has more than kTaggedTextMax characters.
Record taggedTextRecord(int number, std::string_view text);

/// The records of a file at the time of reading. Records beyond the end of the file read as zeros.
class RecordImage {
  public:
    RecordImage() = default;
    explicit RecordImage(std::string bytes) : bytes_(std::move(bytes)) {}

    runtime::Int16 integer(int number) const;
    bool boolean(int number) const { return integer(number) == -1; }
    runtime::Byte byte(int number) const;
    float single(int number) const;
    /// A stored length that is too large for the record is limited, and the record counts as damaged.
    std::string text(int number);
    /// Empty for a record that was never written.
    std::string taggedText(int number);

    /// Records that were found damaged on reading, and whether the file ends inside a record.
    const std::vector<int>& damaged() const { return damaged_; }
    bool truncated() const { return bytes_.size() % kRecordLength != 0; }

  private:
    std::array<char, kRecordLength> bytesOf(int number) const;
    std::string textAt(int number, std::size_t offset, std::size_t max);

    std::string bytes_;
    std::vector<int> damaged_;
};

} // namespace config
