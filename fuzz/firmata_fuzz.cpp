// What a board sends, in pieces, while engines step and time passes.

#include "fuzz/script.h"
#include "platform/firmata/board.h"

#include <algorithm>
#include <cstdint>

namespace {

using fuzz::require;

using Time = firmata::Board::Time;

constexpr firmata::Wiring kWiring{{2, 3, 4, 5, 6, 7, 8, 9}, 57600, 255};
constexpr std::uint8_t kReset = 0xFF;

/// The serial line, by its speed alone.
struct Line {
    Time byteTime = Time(std::chrono::seconds(10)) / kWiring.baud;
    Time free{};

    void send(const firmata::Bytes& bytes, Time now) {
        require(std::ranges::find(bytes, kReset) == bytes.end());
        free = std::max(free, now) + byteTime * static_cast<int>(bytes.size());
        require(free - now <= byteTime * firmata::Board::kBoardBuffer);
    }
};

} // namespace

/// Pairs of bytes: what happens, and with what.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Time now{};
    firmata::Board board(kWiring, now);
    Line line;
    const auto hear = [&](const firmata::Bytes& bytes) {
        board.hear(bytes, now);
        line.send(board.takeDue(now), now);
    };
    // Every other input begins with a board that has started.
    if (size % 2 == 1) {
        hear({0xF9, 2, 5});
        for (std::uint8_t pin = 2; pin < 10; ++pin)
            hear({0xF0, 0x6E, pin, 1, 0, 0xF7});
        require(board.ready());
    }
    for (std::size_t at = 0; at + 1 < size; at += 2) {
        const std::uint8_t value = data[at + 1];
        if (data[at] % 4 == 0) now += std::chrono::microseconds(100) * value;
        if (data[at] % 4 == 1) board.want(value);
        hear(data[at] % 4 > 1 ? firmata::Bytes{value} : firmata::Bytes());
        require(board.next() > now);
        require(board.faultAt(now).empty() || board.takeDue(now).empty());
    }
    return 0;
}
