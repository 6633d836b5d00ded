#include "platform/firmata/board.h"

#include <algorithm>

namespace firmata {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kProtocol = 2;     // major version
constexpr int kBitsPerByte = 10; // on the line: start bit, 8 data bits, stop bit
constexpr int kAll = (1 << kOutputs) - 1;
constexpr int kQuerySize = 1; // always has room
constexpr int kHalfA = 15, kHalfB = kAll - kHalfA;

/// The pins are asked again at this interval: a board may restart in the middle.
constexpr Board::Time kAskInterval = seconds(1);
/// An answer may take so long, by slow USB chips, before the board counts as slower than its line.
constexpr Board::Time kUsualAnswer = milliseconds(40);

constexpr const char* kRemedy = "upload StandardFirmata (in the Arduino IDE: File, Examples, Firmata)";

} // namespace

Board::Board(const Wiring& wiring, Time now)
    : wiring_(wiring), byteTime_(Time(seconds(kBitsPerByte)) / wiring.baud),
      window_(std::max(kBoardBuffer, static_cast<int>(kUsualAnswer / byteTime_))), wanted_(wiring.off),
      now_(now), start_(now), nextQuery_(now), lineFree_(now) {
    modes_.fill(kUnknown);
    listener_.onVersion = [this](int major, int minor) { hearVersion(major, minor); };
    listener_.onPinState = [this](std::span<const std::uint8_t> data) { hearPinState(data); };
    // The sketch names itself only at its start.
    listener_.onFirmware = [this] {
        if (ready()) fail("the board has restarted by itself: is its supply too weak?");
    };
}

void Board::hear(std::span<const std::uint8_t> bytes, Time now) {
    now_ = now;
    for (const std::uint8_t byte : bytes) {
        heard_ = true;
        listener_.hear(byte);
    }
}

void Board::want(int levels) {
    waiting_ |= wanted_ ^ levels;
    wanted_ = levels;
}

Bytes Board::takeDue(Time now) {
    now_ = now;
    Bytes bytes;
    if (!fault_.empty()) return bytes;
    if (stage_ != Stage::kAsking && now >= nextQuery_) {
        query(bytes);
    } else if (stage_ == Stage::kAsking && now >= std::max(nextQuery_, lineFree_)) {
        askForPins(bytes);
    }
    if (ready() && waiting_ != 0 && now >= patternDue()) {
        const Bytes pattern = portMessages(wiring_, wanted_, waiting_);
        bytes.insert(bytes.end(), pattern.begin(), pattern.end());
        waiting_ = 0;
        sinceQuery_ += static_cast<int>(pattern.size());
    }
    lineFree_ = std::max(lineFree_, now) + byteTime_ * static_cast<int>(bytes.size());
    return bytes;
}

Board::Time Board::next() const {
    if (!fault_.empty()) return Time::max();
    if (ready()) return waiting_ != 0 ? std::min(nextQuery_, patternDue()) : nextQuery_;
    const Time due = stage_ == Stage::kAsking ? std::max(nextQuery_, lineFree_) : nextQuery_;
    return std::min(due, start_ + kLongestStart);
}

void Board::query(Bytes& bytes) {
    addVersionQuery(bytes);
    nextQuery_ = now_ + kQueryInterval;
    if (unanswered_) return;
    unanswered_ = now_;
    sinceQuery_ = 0;
}

/// Levels come first: so no output that the sketch has at 0 stays there for longer than it must. A sketch of
/// an older version sets a pin to 0 when it makes the pin an output, so that levels follow there too.
void Board::askForPins(Bytes& bytes) {
    for (std::size_t output = 0; output < kOutputs; ++output) {
        if (modes_.at(output) == kUnknown || modes_.at(output) == kModeOutput) continue;
        addOutputMode(bytes, wiring_.pins.at(output));
        modesSet_ = true;
    }
    const Bytes levels = portMessages(wiring_, wiring_.off, kAll);
    bytes.insert(bytes.end(), levels.begin(), levels.end());
    for (const int pin : wiring_.pins)
        addPinStateQuery(bytes, pin);
    modes_.fill(kUnknown);
    nextQuery_ = now_ + kAskInterval;
}

void Board::hearVersion(int major, int minor) {
    if (major != kProtocol) {
        fail("the board speaks Firmata " + std::to_string(major) + "." + std::to_string(minor) +
             ", not 2: " + kRemedy);
        return;
    }
    if (stage_ == Stage::kCalling) {
        stage_ = Stage::kAsking;
        nextQuery_ = now_;
    }
    // A board that was late is asked again at once.
    if (ready() && sinceQuery_ + kBoardBuffer > window_) nextQuery_ = now_;
    unanswered_.reset();
}

void Board::hearPinState(std::span<const std::uint8_t> data) {
    if (stage_ != Stage::kAsking || data.empty()) return;
    const auto pin = std::ranges::find(wiring_.pins, data[0]);
    if (pin == wiring_.pins.end()) return;
    const bool exists = data.size() > 1;
    auto& mode = modes_.at(static_cast<std::size_t>(pin - wiring_.pins.begin()));
    if (!exists || (modesSet_ && data[1] != kModeOutput)) {
        fail("pin " + std::to_string(*pin) + " of the board cannot be an output");
        return;
    }
    mode = data[1];
    if (std::ranges::find(modes_, kUnknown) != modes_.end()) return;
    if (std::ranges::count(modes_, kModeOutput) == static_cast<int>(kOutputs)) stage_ = Stage::kReady;
    nextQuery_ = now_;
}

const std::string& Board::faultAt(Time now) {
    now_ = now;
    if (ready() && unanswered_ && now_ - *unanswered_ > kLongestSilence) {
        fail("the board has not answered for a second. Plug it in again");
    } else if (!ready() && now_ - start_ >= kLongestStart) {
        fail(heard_ ? std::string("what it sends is not Firmata: another device, or a board with another "
                                  "sketch. ") +
                          kRemedy
                    : std::string("it does not answer. If it is an Arduino: ") + kRemedy);
    }
    return fault_;
}

void Board::fail(const std::string& why) {
    if (fault_.empty()) fault_ = why;
}

/// A board that is slower than its line must answer before it gets more. Else the line sets the pace. On a
/// busy line one engine's levels wait for the other's, so that two fast engines share each message.
Board::Time Board::patternDue() const {
    const int size = static_cast<int>(portMessages(wiring_, wanted_, waiting_).size());
    if (unanswered_ && sinceQuery_ + size > window_) return Time::max();
    const bool both = (waiting_ & kHalfA) != 0 && (waiting_ & kHalfB) != 0;
    const int most = both ? kBoardBuffer : kBoardBuffer / 2;
    return lineFree_ - byteTime_ * (most - size - kQuerySize);
}

} // namespace firmata
