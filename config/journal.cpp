#include "config/journal.h"

#include "config/little_endian.h"

#include <algorithm>
#include <cstdint>

namespace config {

namespace {

constexpr std::string_view kMark = "TSJ1";
constexpr std::size_t kHeader = 12; // mark, length, sum

/// CRC-32 as in ISO 3309.
std::uint32_t sumOf(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

void append(std::string& bytes, std::size_t value) {
    const std::size_t end = bytes.size();
    bytes.resize(end + sizeof(std::uint32_t));
    put(bytes, end, static_cast<std::uint32_t>(value));
}

/// Takes values from the front of a text. When a value is missing, `good` becomes false, and this and all
/// later values are empty.
struct Reader {
    std::string_view rest;
    bool good = true;

    std::string_view bytes(std::size_t length) {
        good = good && length <= rest.size();
        const std::string_view front = rest.substr(0, good ? length : 0);
        rest.remove_prefix(front.size());
        return front;
    }
    std::uint32_t number() {
        const std::string_view front = bytes(sizeof(std::uint32_t));
        return good ? take<std::uint32_t>(front) : 0;
    }
};

Unit decodeUnit(Reader& reader) {
    Unit unit;
    for (std::uint32_t count = reader.number(); count > 0 && reader.good; --count) {
        const std::string name(reader.bytes(reader.number()));
        unit.files.push_back({name, std::string(reader.bytes(reader.number()))});
        // Only plain file names of this folder are valid.
        reader.good = reader.good && !name.empty() && name.find('/') == std::string::npos;
    }
    for (std::uint32_t count = reader.number(); count > 0 && reader.good; --count) {
        const std::uint32_t number = reader.number();
        reader.good = reader.good && number >= 1 && number <= record::kLast;
        Record record{static_cast<int>(number)};
        reader.bytes(kRecordLength).copy(record.bytes.data(), kRecordLength);
        unit.records.push_back(record);
    }
    return unit;
}

} // namespace

std::string encodeUnit(const Unit& unit) {
    std::string body;
    append(body, unit.files.size());
    for (const auto& [name, bytes] : unit.files) {
        append(body, name.size());
        body += name;
        append(body, bytes.size());
        body += bytes;
    }
    append(body, unit.records.size());
    for (const Record& record : unit.records) {
        append(body, static_cast<std::size_t>(record.number));
        body.append(record.bytes.data(), kRecordLength);
    }
    std::string group(kMark);
    append(group, body.size());
    append(group, sumOf(body));
    return group + body;
}

bool Journal::holds(std::string_view name) const {
    return std::ranges::any_of(units, [name](const Unit& unit) {
        return std::ranges::any_of(unit.files, [name](const Unit::Whole& file) { return file.name == name; });
    });
}

Journal decodeJournal(std::string_view bytes) {
    Journal journal;
    for (Reader reader{bytes}; reader.bytes(kMark.size()) == kMark;) {
        const std::uint32_t length = reader.number(), sum = reader.number();
        Reader body{reader.bytes(length)};
        if (!reader.good || sumOf(body.rest) != sum) break;
        Unit unit = decodeUnit(body);
        if (!body.good) break;
        journal.units.push_back(std::move(unit));
        journal.length += kHeader + length;
    }
    return journal;
}

} // namespace config
