#include "tests/emulated_board/sketch.h"

#include <algorithm>

namespace {

constexpr int kFirstPin = 2, kOutputs = 8, kPinsPerPort = 8, kFirstAnalogue = 14;
constexpr std::size_t kBuffer = 64;

std::string text(const Sketch::Bytes& bytes) {
    std::string words;
    for (const int byte : bytes)
        words += " " + std::to_string(byte);
    return words;
}

} // namespace

void Sketch::reset(Time now) {
    arriving_.clear();
    message_.clear();
    replies_.clear();
    bootEnd_ = now + kind_.boot;
    saidHello_ = false;
    levels_.fill(0);
    modes_.fill(kOutput);
    std::fill(modes_.begin() + kFirstAnalogue, modes_.end(), kAnalogue);
    for (const int pin : kind_.inputs)
        modes_.at(static_cast<std::size_t>(pin)) = 0;
    changes_.push_back({now, levels()});
}

int Sketch::levels() const {
    int levels = 0;
    for (int output = 0; output < kOutputs; ++output)
        levels |= level(kFirstPin + output) << output;
    return levels;
}

void Sketch::receive(const Bytes& bytes, Time now) {
    const Time byteTime = Time(std::chrono::seconds(10)) / kind_.baud;
    for (const std::uint8_t byte : bytes) {
        lineFree_ = std::max(lineFree_, now) + byteTime;
        arriving_.push_back({lineFree_, byte});
    }
}

Sketch::Bytes Sketch::work(Time now) {
    if (!runs(now)) {
        std::erase_if(arriving_, [&](const Arrival& each) { return each.when <= now; }); // nobody reads
        return {};
    }
    if (!std::exchange(saidHello_, true)) {
        free_ = bootEnd_;
        say(kind_.noise);
        const auto major = static_cast<std::uint8_t>(kind_.major),
                   minor = static_cast<std::uint8_t>(kind_.minor);
        say({0xF9, major, minor});
        say({0xF0, 0x79, major, minor, 'S', 0, 'F', 0, 0xF7});
    }
    while (!arriving_.empty()) {
        const Arrival next = arriving_.front();
        free_ = std::max(free_, next.when) + kind_.perByte;
        if (free_ > now) {
            free_ -= kind_.perByte;
            break;
        }
        arriving_.pop_front();
        const auto waiting =
            std::ranges::count_if(arriving_, [&](const Arrival& each) { return each.when <= free_; });
        if (!kind_.flowControl && static_cast<std::size_t>(waiting) >= kBuffer) fault("the buffer is full");
        now_ = free_;
        take(next.byte);
    }
    return std::exchange(replies_, {});
}

void Sketch::take(std::uint8_t byte) {
    constexpr std::uint8_t kEnd = 0xF7;
    if (!message_.empty() && message_.front() == 0xF0 && byte == kEnd) {
        endSysex();
        message_.clear();
        return;
    }
    if (byte >= 0x80) {
        // Only the watchdog may cut a message, and says so by an end.
        if (!message_.empty() && byte != kEnd) fault("cut:" + text(message_));
        message_.clear();
        if (byte == kEnd) return;
    } else if (message_.empty()) {
        fault("data without a command: " + std::to_string(byte));
        return;
    }
    message_.push_back(byte);
    carryOut();
}

void Sketch::carryOut() {
    const int command = message_.front();
    if (command == 0xF0) return;
    if (command == 0xF9) {
        ++queries_;
        if (kind_.chatters) say({0xE0, 12, 3, 0xF0, 0x71, 'h', 0, 'i', 0, 0xF7, 0x90, 1, 0});
        say({0xF9, static_cast<std::uint8_t>(kind_.major), static_cast<std::uint8_t>(kind_.minor)});
    } else if ((command & 0xF0) == 0x90) {
        if (message_.size() < 3) return;
        setPort(command & 0x0F, message_[1] | message_[2] << 7);
    } else if (command == 0xF4) {
        if (message_.size() < 3) return;
        int& mode = modes_.at(message_[1]);
        if (mode == message_[2]) fault("pin " + std::to_string(message_[1]) + " has this mode already");
        mode = message_[2];
        levels_.at(message_[1]) = 0; // as old versions do
    } else {
        fault("unknown: " + std::to_string(command));
    }
    message_.clear();
}

void Sketch::endSysex() {
    if (message_.size() != 3 || message_[1] != 0x6D) return fault("unknown sysex:" + text(message_));
    const std::uint8_t pin = message_[2];
    if (pin >= kPins) return say({0xF0, 0x6E, pin, 0xF7});
    say({0xF0, 0x6E, pin, static_cast<std::uint8_t>(modes_.at(pin)), 0, 0xF7});
}

void Sketch::setPort(int port, int values) {
    const int before = levels();
    for (int bit = 0; bit < kPinsPerPort; ++bit) {
        const int pin = port * kPinsPerPort + bit;
        if (pin < kPins && modes_.at(static_cast<std::size_t>(pin)) == kOutput)
            levels_.at(static_cast<std::size_t>(pin)) = values >> bit & 1;
    }
    if (levels() != before && kind_.counts) changes_.push_back({now_, levels()});
}

void Sketch::say(const Bytes& bytes) {
    if (!kind_.mute) replies_.insert(replies_.end(), bytes.begin(), bytes.end());
}
