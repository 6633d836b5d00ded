#include "config/record.h"

#include "config/little_endian.h"
#include "runtime/errors.h"
#include "runtime/text.h"

#include <algorithm>
#include <bit>

namespace config {

namespace {

void putText(Record& record, std::size_t offset, std::string_view text, std::size_t max) {
    const std::string ansi = runtime::toAnsi(text);
    if (ansi.size() > max) throw runtime::BadRecordLength();
    put(record.bytes, offset, static_cast<std::uint16_t>(ansi.size()));
    std::copy(ansi.begin(), ansi.end(), record.bytes.begin() + static_cast<std::ptrdiff_t>(offset) + 2);
}

constexpr std::uint16_t kTagNone = 0;
constexpr std::uint16_t kTagText = 8;

} // namespace

Record integerRecord(int number, runtime::Int16 value) {
    Record record{number};
    put(record.bytes, 0, static_cast<std::uint16_t>(value.value()));
    return record;
}

Record booleanRecord(int number, bool value) {
    return integerRecord(number, value ? -1 : 0);
}

Record byteRecord(int number, runtime::Byte value) {
    Record record{number};
    put(record.bytes, 0, value.value());
    return record;
}

Record singleRecord(int number, float value) {
    Record record{number};
    put(record.bytes, 0, std::bit_cast<std::uint32_t>(value));
    return record;
}

Record textRecord(int number, std::string_view text) {
    Record record{number};
    putText(record, 0, text, kTextMax);
    return record;
}

Record taggedTextRecord(int number, std::string_view text) {
    Record record{number};
    put(record.bytes, 0, kTagText);
    putText(record, 2, text, kTaggedTextMax);
    return record;
}

std::array<char, kRecordLength> RecordImage::bytesOf(int number) const {
    std::array<char, kRecordLength> record{};
    const std::size_t offset = static_cast<std::size_t>(number - 1) * kRecordLength;
    if (offset < bytes_.size()) bytes_.copy(record.data(), kRecordLength, offset);
    return record;
}

runtime::Int16 RecordImage::integer(int number) const {
    return static_cast<std::int16_t>(take<std::uint16_t>(bytesOf(number)));
}

runtime::Byte RecordImage::byte(int number) const {
    return take<std::uint8_t>(bytesOf(number));
}

float RecordImage::single(int number) const {
    return std::bit_cast<float>(take<std::uint32_t>(bytesOf(number)));
}

std::string RecordImage::textAt(int number, std::size_t offset, std::size_t max) {
    const auto bytes = bytesOf(number);
    const std::size_t length = take<std::uint16_t>(bytes, offset);
    if (length > max) damaged_.push_back(number);
    return runtime::fromAnsi({bytes.data() + offset + 2, std::min(length, max)});
}

std::string RecordImage::text(int number) {
    return textAt(number, 0, kTextMax);
}

std::string RecordImage::taggedText(int number) {
    const auto tag = take<std::uint16_t>(bytesOf(number));
    if (tag == kTagText) return textAt(number, 2, kTaggedTextMax);
    if (tag != kTagNone) damaged_.push_back(number);
    return {};
}

} // namespace config
