#include "platform/firmata/messages.h"

namespace firmata {

namespace {

constexpr std::uint8_t kDigitalPort = 0x90; // plus the port; then bits 0 to 6, then bit 7
constexpr std::uint8_t kSysexBegin = 0xF0;
constexpr std::uint8_t kPinMode = 0xF4;
constexpr std::uint8_t kSysexEnd = 0xF7;
constexpr std::uint8_t kVersion = 0xF9;
constexpr std::uint8_t kCommand = 0x80; // and above; below are data

// The first data byte of a sysex message.
constexpr std::uint8_t kPinStateQuery = 0x6D;
constexpr std::uint8_t kPinStateAnswer = 0x6E;
constexpr std::uint8_t kFirmware = 0x79;

constexpr int kPinsPerPort = 8;
constexpr int kDataMask = 0x7F;
constexpr std::size_t kLongestSysex = 256; // the sketch's longest message is shorter

} // namespace

Bytes portMessages(const Wiring& wiring, int levels, int changed) {
    std::array<int, kLastPin / kPinsPerPort + 1> values{};
    unsigned ports = 0;
    for (std::size_t output = 0; output < kOutputs; ++output) {
        const int pin = wiring.pins.at(output);
        const auto port = static_cast<std::size_t>(pin / kPinsPerPort);
        if ((levels >> output & 1) != 0) values.at(port) |= 1 << pin % kPinsPerPort;
        if ((changed >> output & 1) != 0) ports |= 1U << port;
    }
    Bytes bytes;
    for (std::size_t port = 0; port < values.size(); ++port) {
        if ((ports >> port & 1) == 0) continue;
        bytes.push_back(static_cast<std::uint8_t>(kDigitalPort | port));
        bytes.push_back(static_cast<std::uint8_t>(values.at(port) & kDataMask));
        bytes.push_back(static_cast<std::uint8_t>(values.at(port) >> (kPinsPerPort - 1)));
    }
    return bytes;
}

Bytes offMessage(const Wiring& wiring) {
    Bytes bytes = portMessages(wiring, wiring.off, (1 << kOutputs) - 1);
    bytes.insert(bytes.begin(), kSysexEnd);
    return bytes;
}

void addVersionQuery(Bytes& bytes) {
    bytes.push_back(kVersion);
}

void addPinStateQuery(Bytes& bytes, int pin) {
    bytes.insert(bytes.end(), {kSysexBegin, kPinStateQuery, static_cast<std::uint8_t>(pin), kSysexEnd});
}

void addOutputMode(Bytes& bytes, int pin) {
    bytes.insert(bytes.end(), {kPinMode, static_cast<std::uint8_t>(pin), kModeOutput});
}

void Listener::hear(std::uint8_t byte) {
    if (byte == kSysexEnd) {
        if (command_ == kSysexBegin) endSysex();
        command_ = 0;
    } else if (byte >= kCommand) {
        command_ = byte;
        data_.clear();
    } else if (command_ == kSysexBegin) {
        if (data_.size() == kLongestSysex) command_ = 0;
        data_.push_back(byte);
    } else if (command_ == kVersion) {
        data_.push_back(byte);
        if (data_.size() < 2) return;
        command_ = 0;
        onVersion(data_[0], data_[1]);
    }
}

void Listener::endSysex() {
    if (data_.empty()) return;
    const auto data = std::span(data_).subspan(1);
    if (data_.front() == kPinStateAnswer) onPinState(data);
    if (data_.front() == kFirmware) onFirmware();
}

} // namespace firmata
