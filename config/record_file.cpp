#include "config/record_file.h"

#include "config/records.h"
#include "runtime/errors.h"
#include "runtime/text.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <system_error>

namespace config {

namespace {

// Values are little-endian whatever the machine is.
template <class Unsigned>
void put(Record& record, std::size_t offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
        record.bytes.at(offset + i) = static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

template <class Unsigned>
Unsigned take(const std::array<char, kRecordLength>& bytes, std::size_t offset = 0) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        const auto byte = static_cast<unsigned char>(bytes.at(offset + i));
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(byte) << (8 * i));
    }
    return value;
}

void putText(Record& record, std::size_t offset, std::string_view text, std::size_t max) {
    const std::string ansi = runtime::toAnsi(text);
    if (ansi.size() > max) throw runtime::BadRecordLength();
    put(record, offset, static_cast<std::uint16_t>(ansi.size()));
    std::copy(ansi.begin(), ansi.end(), record.bytes.begin() + static_cast<std::ptrdiff_t>(offset) + 2);
}

constexpr std::uint16_t kTagNone = 0;
constexpr std::uint16_t kTagText = 8;

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what, int error) {
    throw runtime::FileError("\"" + path.filename().string() + "\" cannot be " + what + ": " +
                             std::generic_category().message(error != 0 ? error : EIO));
}

} // namespace

Record integerRecord(int number, runtime::Int16 value) {
    Record record{number};
    put(record, 0, static_cast<std::uint16_t>(value.value()));
    return record;
}

Record booleanRecord(int number, bool value) {
    return integerRecord(number, value ? -1 : 0);
}

Record byteRecord(int number, runtime::Byte value) {
    Record record{number};
    put(record, 0, value.value());
    return record;
}

Record singleRecord(int number, float value) {
    Record record{number};
    put(record, 0, std::bit_cast<std::uint32_t>(value));
    return record;
}

Record textRecord(int number, std::string_view text) {
    Record record{number};
    putText(record, 0, text, kTextMax);
    return record;
}

Record taggedTextRecord(int number, std::string_view text) {
    Record record{number};
    put(record, 0, kTagText);
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

void RecordFile::create() const {
    errno = 0;
    const std::ofstream file(path_, std::ios::binary | std::ios::app);
    if (!file) fail(path_, "created", errno);
}

RecordImage RecordFile::read() const {
    std::error_code error;
    if (!std::filesystem::exists(path_, error)) {
        create();
        return {};
    }
    // A stream opens a folder without complaint and only fails on reading.
    if (std::filesystem::is_directory(path_, error)) fail(path_, "read", EISDIR);
    errno = 0;
    std::ifstream file(path_, std::ios::binary);
    std::ostringstream bytes;
    if (!file || (bytes << file.rdbuf(), file.bad())) fail(path_, "read", errno);
    return RecordImage(bytes.str());
}

void RecordFile::write(const std::vector<Record>& records) const {
    if (sealed_) return;
    std::error_code error;
    if (!std::filesystem::exists(path_, error)) create();
    errno = 0;
    std::fstream file;
    // Unbuffered: each record is one positioned write.
    file.rdbuf()->pubsetbuf(nullptr, 0);
    file.open(path_, std::ios::binary | std::ios::in | std::ios::out);
    if (!file) fail(path_, "written", errno);
    for (const Record& record : records) {
        file.seekp(static_cast<std::streamoff>(record.number - 1) *
                   static_cast<std::streamoff>(kRecordLength));
        file.write(record.bytes.data(), kRecordLength);
        if (!file.flush()) fail(path_, "written", errno);
    }
}

void RecordFile::replaceBy(const std::filesystem::path& source) const {
    std::error_code error;
    if (!std::filesystem::is_regular_file(source, error))
        fail(source, "read", error ? error.value() : ENOENT);
    if (std::filesystem::file_size(source, error) > record::kLast * kRecordLength) {
        throw runtime::FileError("\"" + source.filename().string() +
                                 "\" is no configuration: it is too long");
    }
    if (std::filesystem::equivalent(source, path_, error)) return;
    RecordFile(source).copyTo(path_);
}

void RecordFile::copyTo(const std::filesystem::path& target) const {
    std::error_code error;
    if (std::filesystem::equivalent(path_, target, error)) return;
    std::filesystem::path part = target;
    part += ".part";
    std::filesystem::copy_file(path_, part, std::filesystem::copy_options::overwrite_existing, error);
    // A copy of a read-only file could not be written to any more.
    using std::filesystem::perms;
    if (!error) {
        std::filesystem::permissions(part, perms::owner_read | perms::owner_write,
                                     std::filesystem::perm_options::add, error);
    }
    if (!error) std::filesystem::rename(part, target, error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(part, ignored);
    fail(target, "written", error.value());
}

} // namespace config
