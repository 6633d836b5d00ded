#pragma once

#include "platform/timers.h"

#include <cstdint>
#include <vector>

namespace simulated {

/// Virtual time: it passes only when advance says so. Timers that are due at the same moment tick in the
/// order in which they were started.
class Clock : public platform::Timers {
  public:
    std::unique_ptr<platform::PeriodicTimer> create(std::function<void()> tick) override;
    /// Lets so many milliseconds pass, running the ticks that fall due.
    void advance(int milliseconds);
    std::int64_t now() const { return now_; } // milliseconds

  private:
    class Timer;
    Timer* earliest() const;

    std::int64_t now_ = 0;
    std::uint64_t starts_ = 0;
    std::vector<Timer*> running_;
};

} // namespace simulated
