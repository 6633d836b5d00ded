#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// Messages of the Firmata protocol 2.x, as the sketch StandardFirmata speaks it.
namespace firmata {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::size_t kOutputs = 8;
inline constexpr int kLastPin = 127;

/// How the eight outputs are connected.
struct Wiring {
    std::array<int, kOutputs> pins; // 0 to kLastPin, each another one
    int baud;
    int off; // the levels of the outputs, in bits 0 to 7, at which no coil is energised
};

inline constexpr int kModeOutput = 1;

/// Sets the levels of whole ports, eight pins each: of those ports that have a pin of an output in `changed`.
/// Pins that are no output of ours get 0, which the sketch gave them at its start.
Bytes portMessages(const Wiring& wiring, int levels, int changed);
/// Ends a message that may have been cut, then sets all outputs off.
Bytes offMessage(const Wiring& wiring);
void addVersionQuery(Bytes& bytes);
void addPinStateQuery(Bytes& bytes, int pin);
/// Makes a pin an output. Where it is one already, the sketch would set it to 0.
void addOutputMode(Bytes& bytes, int pin);

/// Cuts what a board sends into messages. Knows the messages below; ignores other messages and noise.
class Listener {
  public:
    std::function<void(int major, int minor)> onVersion;
    /// `data` are pin, mode and state; mode and state are missing if the board has no such pin.
    std::function<void(std::span<const std::uint8_t> data)> onPinState;
    /// The sketch names itself, which it does at its start.
    std::function<void()> onFirmware;

    void hear(std::uint8_t byte);

  private:
    void endSysex();

    std::uint8_t command_ = 0; // of the message that is being received; 0: none
    Bytes data_;
};

} // namespace firmata
