#pragma once

#include "platform/firmata/messages.h"

#include <array>
#include <chrono>
#include <optional>
#include <span>
#include <string>

namespace firmata {

/// The talk with a board that runs the sketch StandardFirmata: sets up its pins, sends it patterns at the
/// pace of the serial line, and notices when it stops answering. The class only computes: the caller supplies
/// the time, hands over what the board has sent, and sends what is due.
///
/// The board acknowledges no write, and drops what its buffer of 64 bytes cannot hold. So no more bytes are
/// on the way than that, by the line's speed, and a version query four times a second shows that the board
/// still reads. While a query is not answered, little is sent: a board that is slower than its line sets the
/// pace.
class Board {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    static constexpr Time kLongestStart = std::chrono::seconds(10); // opening resets most boards
    static constexpr Time kLongestSilence = std::chrono::seconds(1);
    static constexpr Time kQueryInterval = std::chrono::milliseconds(250);
    static constexpr int kBoardBuffer = 64; // bytes

    /// The line has just been opened.
    Board(const Wiring& wiring, Time now);
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    /// Takes what the board has sent, in pieces of any length.
    void hear(std::span<const std::uint8_t> bytes, Time now);
    /// Sets the levels of the outputs, in bits 0 to 7. They replace levels that have not been sent yet;
    /// before the board is ready, all outputs stay off.
    void want(int levels);
    /// The bytes that must be sent now, which then count as sent.
    Bytes takeDue(Time now);
    /// When takeDue has something to do next, unless the board sends something before.
    Time next() const;

    /// Whether the last wanted levels of the outputs in `mask` have been sent.
    bool taken(int mask) const { return (waiting_ & mask) == 0; }
    /// Whether all levels have been sent and have left the line.
    bool idle(Time now) const { return waiting_ == 0 && now >= lineFree_; }
    /// Whether the board has answered and its pins are outputs.
    bool ready() const { return stage_ == Stage::kReady; }
    /// Why the board cannot be used any more, as words that follow the device's name; empty while it can.
    /// Call it when what has arrived was heard: an answer that waits unread is no silence.
    const std::string& faultAt(Time now);

  private:
    enum class Stage { kCalling, kAsking, kReady };

    void hearVersion(int major, int minor);
    void hearPinState(std::span<const std::uint8_t> data);
    void query(Bytes& bytes);
    void askForPins(Bytes& bytes);
    /// When the waiting levels may be sent.
    Time patternDue() const;
    void fail(const std::string& why);

    const Wiring wiring_;
    const Time byteTime_; // of one byte on the line
    const int window_;    // bytes that may follow a query without its answer
    Listener listener_;
    Stage stage_ = Stage::kCalling;
    static constexpr int kUnknown = -1;
    std::array<int, kOutputs> modes_; // of the pins
    bool modesSet_ = false;
    bool heard_ = false; // anything at all
    std::string fault_;
    int wanted_;
    int waiting_ = 0; // outputs that have changed since they were sent

    Time now_;
    const Time start_;
    Time nextQuery_;
    std::optional<Time> unanswered_; // when the oldest open query was sent
    int sinceQuery_ = 0;             // bytes sent after it
    Time lineFree_;                  // when all bytes will have left
};

} // namespace firmata
