#include "bridge/protocol.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace bridge {

namespace {

struct Escape {
    char letter;
    char character;
};

constexpr std::array kEscapes = {Escape{'s', ' '},  Escape{'n', '\n'},  Escape{'r', '\r'},
                                 Escape{'t', '\t'}, Escape{'\\', '\\'}, Escape{'0', '\0'}};

void append(std::string& line, std::string_view field) {
    for (const char character : field) {
        const auto* const escape = std::ranges::find(kEscapes, character, &Escape::character);
        if (escape == kEscapes.end()) {
            line += character;
        } else {
            line += '\\';
            line += escape->letter;
        }
    }
}

} // namespace

std::string join(const std::vector<std::string_view>& fields) {
    std::string line;
    for (const auto field : fields) {
        append(line, field);
        line += ' ';
    }
    line.back() = '\n';
    return line;
}

std::optional<std::vector<std::string>> split(std::string_view line) {
    std::vector<std::string> fields(1);
    for (auto at = line.begin(); at != line.end(); ++at) {
        if (*at == ' ') {
            fields.emplace_back();
        } else if (*at != '\\') {
            fields.back() += *at;
        } else {
            if (++at == line.end()) return std::nullopt;
            const auto* const escape = std::ranges::find(kEscapes, *at, &Escape::letter);
            if (escape == kEscapes.end()) return std::nullopt;
            fields.back() += escape->character;
        }
    }
    return fields;
}

std::optional<long long> parseNumber(std::string_view text) {
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

bool isAddress(std::string_view text) {
    for (int number = 1; number <= 4; ++number) {
        const auto end = number < 4 ? text.find('.') : text.size();
        if (end == std::string_view::npos) return false;
        const auto digits = text.substr(0, end);
        const auto value = parseNumber(digits);
        if (!value || *value < 0 || *value > 255 || digits != std::to_string(*value)) return false;
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return true;
}

void LineReader::feed(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto end = bytes.find('\n');
        const auto part = bytes.substr(0, end);
        // One byte of a line is its line feed.
        if (begun_.size() + part.size() >= kLongestLine) tooLong_ = true;
        if (tooLong_) {
            begun_.clear();
        } else {
            begun_ += part;
        }
        if (end == std::string_view::npos) return;
        if (begun_.ends_with('\r')) begun_.pop_back();
        lines_.push_back({std::move(begun_), tooLong_});
        begun_.clear();
        tooLong_ = false;
        bytes.remove_prefix(end + 1);
    }
}

std::optional<LineReader::Line> LineReader::next() {
    if (taken_ == lines_.size()) {
        lines_.clear();
        taken_ = 0;
        return std::nullopt;
    }
    return std::move(lines_[taken_++]);
}

} // namespace bridge
