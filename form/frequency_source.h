#pragma once

#include "form/controls.h"

#include <cstdint>
#include <optional>
#include <string>

namespace form {

/// Characters of a frequency that tell one band from another, and one memory from another.
constexpr std::size_t kKeyCharacters = 2;

/// A program that reports the transceiver's frequency. radio::FrequencySources lists them all.
class FrequencySource {
  public:
    /// `program` is the value of record 64, `status` the name in the status bar, `display` the label where
    /// the frequency shows.
    FrequencySource(int program, const char* status, Label& display)
        : number(program), name(status), label(display) {}
    FrequencySource(const FrequencySource&) = delete;
    FrequencySource& operator=(const FrequencySource&) = delete;
    virtual ~FrequencySource() = default;

    const int number;
    const char* const name;
    Label& label;

    /// Connects, at once or later. The state shows in lblAutoMemConn.
    virtual void connect() = 0;
    /// Ends the connection, or the attempt at one; nothing happens where there is neither.
    virtual void release() = 0;
    /// Looks after the connection, at each tick of tmrFastMem.
    virtual void poll() {}

    /// Whether there is anything to derive a key from. If not, the tick ends before it compares anything.
    virtual bool hasFrequency() const { return true; }
    /// Whether the connection is in a state in which another band is announced.
    virtual bool announcesBands() const = 0;
    /// What memories compare with the beginning of their labels: "14", "7."; other texts match none.
    virtual std::string key() const = 0;
    /// The frequency as exactly as the program reports it; nothing where it is not known.
    virtual std::optional<std::int64_t> hertz() const = 0;
    /// Whether the transceiver transmits; false where the program does not say.
    virtual bool transmitting() const { return false; }
};

} // namespace form
