#pragma once

#include <chrono>
#include <optional>

namespace runtime {

/// The way of an output byte to a board that takes some milliseconds for each report: one report is under
/// way at a time, and what goes next is always the newest byte. Bits 0 to 3 and bits 4 to 7 belong to two
/// engines that move on by themselves. Pure arithmetic: the caller brings the clock and the reports.
class NewestByte {
  public:
    using Time = std::chrono::nanoseconds; // since any fixed moment

    /// `byte`, 0 to 255, is to be on the board, in place of one that still waits.
    void want(int byte);
    /// When the next report is to begin, which may have passed; nothing while none waits or one is under way.
    /// A byte that changes one half only waits a little for the other half, if that half was on the board
    /// with the last report: two engines at full speed share each report instead of taking turns.
    std::optional<Time> next() const;
    /// A report begins: the byte to send.
    int begin();
    /// The report that was under way has reached the board.
    void done(Time now);

    /// Whether the outputs in `mask` are on the board as last wanted.
    bool taken(int mask) const { return ((waiting_ | underWay_) & mask) == 0; }

  private:
    /// Above the 1 ms between two steps at full speed, and little beside a report.
    static constexpr Time kGathering = std::chrono::milliseconds(2);
    static constexpr int kAll = 255;

    bool known_ = false; // what the board holds; nobody can ask it
    bool due_ = false;
    bool sending_ = false;
    int wanted_ = 0;
    int waiting_ = 0;  // bits that changed since the last report began
    int underWay_ = 0; // bits that the report under way changes
    int arrived_ = 0;  // bits that the last report changed
    Time arrivedAt_{};
};

} // namespace runtime
