#pragma once

#include "engine/side.h"

#include <array>
#include <cstdint>
#include <string>

namespace engine {

/// Steps made beside steps due, of each engine: the rate that is left where a slow board holds the engines
/// back.
class StepRate {
  public:
    /// A step of the engine was due. It was not made when the outputs were not ready.
    void count(int motor, bool made);
    /// The measured and the set rate of each running engine that fell behind since the last call, "Engine 1:
    /// 118 of 200 steps/s (USB board)"; empty when all kept up.
    std::string takeText(const Sides& sides);

  private:
    /// An engine that makes fewer of the due steps falls behind: a single late report does not count.
    static constexpr double kKeepsUp = 0.95;

    struct Counts {
        std::int64_t due = 0;
        std::int64_t made = 0;
    };
    std::array<Counts, 2> counts_{};
};

} // namespace engine
