#pragma once

#include "form/controls.h"

#include <cstdint>
#include <optional>
#include <string>

namespace form {

/// The number of leading characters of a frequency that distinguish bands and memories.
constexpr std::size_t kKeyCharacters = 2;

constexpr double kHertzPerMegahertz = 1e6;

constexpr double megahertzOf(std::int64_t hertz) {
    return static_cast<double>(hertz) / kHertzPerMegahertz;
}

/// A program that reports the transceiver's frequency. radio::FrequencySources lists them all.
class FrequencySource {
  public:
    /// `program` is the value of record 64, `status` the name in the status bar, `display` the label where
    /// the frequency shows, in `units`.
    FrequencySource(int program, const char* status, Label& display, const char* units)
        : number(program), name(status), label(display), unit(units) {}
    FrequencySource(const FrequencySource&) = delete;
    FrequencySource& operator=(const FrequencySource&) = delete;
    virtual ~FrequencySource() = default;

    const int number;
    const char* const name;
    Label& label;
    const char* const unit; // "kHz"

    /// Connects, at once or later. The state shows in lblAutoMemConn.
    virtual void connect() = 0;
    /// Ends the connection or the connection attempt, if there is one.
    virtual void release() = 0;
    /// Checks the connection; called at each tick of tmrFastMem.
    virtual void poll() {}

    /// Whether there is a frequency to derive a key from. If not, the tick compares nothing.
    virtual bool hasFrequency() const { return true; }
    /// Whether the connection is in a state in which a band change is announced.
    virtual bool announcesBands() const = 0;
    /// The key that is compared with the beginning of the memories' labels: "14", "7.". Any other text
    /// matches no memory.
    virtual std::string key() const = 0;
    /// The frequency, as exact as the program reports it; empty if unknown.
    virtual std::optional<std::int64_t> hertz() const = 0;
    /// Seconds for which the frequency has not been confirmed although it should have been; 0 for a link that
    /// reports each change.
    virtual double age() const { return 0; }
    /// Seconds since the program last reported the frequency.
    virtual double silence() const { return age(); }
    /// Older than a program that still reports would let it become.
    bool isOld() const {
        constexpr double kPatience = 2; // seconds
        return age() >= kPatience;
    }
    /// Whether the transceiver transmits; false if the program does not report it.
    virtual bool transmitting() const { return false; }
};

} // namespace form
