#pragma once

#include "engine/side.h"

#include <array>
#include <cstdint>
#include <string>

namespace engine {

/// Counts the steps due and the steps made of each engine, to show the real step rate when a slow device
/// limits it.
class StepRate {
  public:
    /// A step of the engine was due. It was not made when the outputs were not ready.
    void count(int motor, bool made);
    /// A text with the measured and the set rate of each running engine that was too slow since the last
    /// call, and the device: "Engine 1: 118 of 200 steps/s (USB board)". Empty if no engine was too slow.
    std::string takeText(const Sides& sides, const std::string& device);

  private:
    /// An engine that makes less than this share of its due steps is too slow; a single late step does not
    /// count.
    static constexpr double kKeepsUp = 0.98;

    struct Counts {
        std::int64_t due = 0;
        std::int64_t made = 0;
    };
    std::array<Counts, 2> counts_{};
};

} // namespace engine
