#pragma once

#include <chrono>
#include <optional>

namespace runtime {

/// Schedules output bytes for a board that needs some milliseconds for each report. Only one report is under
/// way at a time, and the next report always carries the newest byte. Bits 0 to 3 belong to one engine and
/// bits 4 to 7 to the other. The class only computes: the caller supplies the time and sends the reports.
class NewestByte {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    /// Sets the byte for the board, 0 to 255; it replaces a byte that still waits.
    void want(int byte);
    /// The time at which the next report must begin; it may be in the past. Empty while no byte waits or a
    /// report is under way. A byte that changes only one half waits a little for the other half, if the last
    /// report changed that other half: so two fast engines share each report instead of taking turns.
    std::optional<Time> next() const;
    /// Starts a report and returns the byte to send.
    int begin();
    /// The report that was under way has reached the board.
    void done(Time now);

    /// Whether the board has the last wanted values of the outputs in `mask`.
    bool taken(int mask) const { return ((waiting_ | underWay_) & mask) == 0; }

  private:
    /// Longer than the 1 ms between two steps at full speed, and short compared with a report.
    static constexpr Time kGathering = std::chrono::milliseconds(2);
    static constexpr int kAll = 255;

    bool known_ = false; // whether the board's outputs are known; the board cannot be read
    bool due_ = false;
    bool sending_ = false;
    int wanted_ = 0;
    int waiting_ = 0;  // bits that changed since the last report began
    int underWay_ = 0; // bits that the report under way changes
    int arrived_ = 0;  // bits that the last report changed
    Time arrivedAt_{};
};

} // namespace runtime
