#pragma once

#include "platform/timers.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace simulated {

/// Virtual time: it passes only when advance says so. Timers that are due at the same moment tick in the
/// order in which they were started.
class Clock : public platform::Timers {
  public:
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;
    /// Lets so much time pass, running the ticks that fall due.
    void advance(std::chrono::nanoseconds time);
    void advance(int milliseconds) { advance(std::chrono::milliseconds(milliseconds)); }
    std::chrono::nanoseconds now() const { return now_; }

  private:
    class Timer;
    Timer* earliest() const;

    std::chrono::nanoseconds now_{};
    std::uint64_t starts_ = 0;
    std::vector<Timer*> running_;
};

} // namespace simulated
