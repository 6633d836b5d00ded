#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The line protocol between the bridge and a controller, as docs/bridge.md describes it.
namespace bridge {

constexpr int kVersion = 1;
constexpr std::uint16_t kPort = 7380;
/// Bytes of a line, its line feed included.
constexpr std::size_t kLongestLine = 4096;
constexpr int kPingInterval = 2000; // milliseconds
/// Milliseconds without a byte after which a peer counts as gone.
constexpr int kSilenceLimit = 5000;

/// One or more fields as a line with its line feed, special characters escaped. A line may come out longer
/// than kLongestLine; see fits.
std::string join(const std::vector<std::string_view>& fields);

/// Whether a line may be sent.
inline bool fits(std::string_view line) {
    return line.size() <= kLongestLine;
}

/// The fields of a line without its line feed. Nothing when an escape is unknown or cut off.
std::optional<std::vector<std::string>> split(std::string_view line);

/// A whole decimal number with an optional minus; nothing when it is none or does not fit.
std::optional<long long> parseNumber(std::string_view text);

/// Whether a text is an IPv4 address: four numbers from 0 to 255 without leading zeros, so that each address
/// has one spelling.
bool isAddress(std::string_view text);

/// Cuts the bytes of a connection into lines. Take the lines after each feed: an unfinished one is all that
/// it keeps.
class LineReader {
  public:
    struct Line {
        std::string text; // without line feed, and without a carriage return before it
        bool tooLong = false;
    };

    void feed(std::string_view bytes);
    /// The next complete line. One that is too long comes once, without its text, when its end has come.
    std::optional<Line> next();

  private:
    std::vector<Line> lines_; // newest last
    std::size_t taken_ = 0;
    std::string begun_;
    bool tooLong_ = false;
};

} // namespace bridge
