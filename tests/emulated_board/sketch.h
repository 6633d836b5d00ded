#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

/// A board with the sketch StandardFirmata behind a serial line, as far as Twinstep can see it, and strict:
/// what a real board would let pass or drop, `faults` names. It computes only; who uses it supplies the time.
class Sketch {
  public:
    using Time = std::chrono::nanoseconds;
    using Bytes = std::vector<std::uint8_t>;
    static constexpr int kPins = 20; // of an Uno: 14 to 19 are its analogue inputs
    static constexpr int kOutput = 1, kAnalogue = 2;

    struct Kind {
        int baud = 57600;
        int major = 2, minor = 5;
        Time boot = std::chrono::milliseconds(1500); // nothing is heard or said meanwhile
        Bytes noise{};                               // what it says at the end of its boot
        Time perByte{};                              // of work; more than the line's: a slow board
        bool flowControl = false;                    // as native USB has: a full buffer drops nothing
        bool mute = false;
        bool chatters = false;     // strings and analogue reports between
        std::vector<int> inputs{}; // pins that another sketch has made inputs
        bool counts = true;        // keeps the patterns
    };

    explicit Sketch(Kind kind) : kind_(std::move(kind)) {}

    /// Power-up, or the reset that opening causes: all pins are outputs at 0.
    void reset(Time now);
    void receive(const Bytes& bytes, Time now);
    /// Works until `now`. Returns what the board has sent meanwhile.
    Bytes work(Time now);
    void setMute(bool mute) { kind_.mute = mute; }

    bool runs(Time now) const { return now >= bootEnd_; }
    int level(int pin) const { return levels_.at(static_cast<std::size_t>(pin)); }
    /// Of pins 2 to 9, in bits 0 to 7.
    int levels() const;
    /// These levels since the last call, each when it changed, one port after the other.
    struct Change {
        Time when;
        int levels;
    };
    std::vector<Change> takeChanges() { return std::exchange(changes_, {}); }
    int queries() const { return queries_; }
    const std::vector<std::string>& faults() const { return faults_; }

  private:
    struct Arrival {
        Time when;
        std::uint8_t byte;
    };

    void take(std::uint8_t byte);
    void carryOut();
    void endSysex();
    void setPort(int port, int values);
    void say(const Bytes& bytes);
    void fault(const std::string& what) { faults_.push_back(what); }

    Kind kind_;
    Time bootEnd_{}, lineFree_{}, free_{}, now_{};
    bool saidHello_ = true;
    std::deque<Arrival> arriving_;
    Bytes message_;
    Bytes replies_;
    std::array<int, kPins> modes_{}, levels_{};
    std::vector<Change> changes_;
    int queries_ = 0;
    std::vector<std::string> faults_;
};
