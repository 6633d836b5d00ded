#include "engine/coil_sequence.h"
#include "engine/parameters.h"
#include "engine/trial.h"
#include "engine/wiring.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <set>

namespace {

/// A motor of two windings with middle taps. The ends of the windings, energised alone, pull the rotor to 0,
/// 90, 180 and 270 degrees of one electrical turn.
class Motor {
  public:
    /// `wires`: the end that hangs on each output.
    explicit Motor(const std::array<int, 4>& wires) : wires_(wires) {}

    /// Energises the outputs one after the other, and tells what the shaft did.
    engine::Turned turn() {
        int turned = 0; // in quarters of an electrical turn
        constexpr int kRounds = 5;
        for (int round = 0; round < kRounds; ++round) {
            for (const int end : wires_) {
                // A pull from the opposite side does not turn the rotor either way.
                const int way = (end - place_ + 4) % 4;
                const int step = way == 1 ? 1 : way == 3 ? -1 : 0;
                place_ = (place_ + step + 4) % 4;
                turned += step;
            }
        }
        constexpr int kClear = 4 * (kRounds - 1);
        return turned >= kClear    ? engine::Turned::kForward
               : turned <= -kClear ? engine::Turned::kBackward
                                   : engine::Turned::kTrembled;
    }

    void swap(const engine::WireSwap& wires) {
        std::swap(wires_.at(static_cast<std::size_t>(wires.first - 1)),
                  wires_.at(static_cast<std::size_t>(wires.second - 1)));
    }

  private:
    std::array<int, 4> wires_;
    int place_ = 0;
};

TEST(Wiring, EveryWayToConnectFourWiresIsPutRightByItsAdvice) {
    std::array<int, 4> wires = {0, 1, 2, 3};
    std::multiset<engine::Turned> seen;
    do {
        Motor motor(wires);
        engine::Turned turned = motor.turn();
        seen.insert(turned);
        int trembles = 0, swaps = 0;
        while (turned != engine::Turned::kForward && swaps <= 3) {
            if (turned == engine::Turned::kTrembled) ++trembles;
            const auto advice = engine::wiresToSwap(turned, trembles);
            ASSERT_TRUE(advice);
            motor.swap(*advice);
            ++swaps;
            turned = motor.turn();
        }
        EXPECT_EQ(turned, engine::Turned::kForward)
            << wires[0] << wires[1] << wires[2] << wires[3] << " after " << swaps;
        EXPECT_LE(swaps, 3);
    } while (std::next_permutation(wires.begin(), wires.end()));
    EXPECT_EQ(seen.count(engine::Turned::kForward), 4U);
    EXPECT_EQ(seen.count(engine::Turned::kBackward), 4U);
    EXPECT_EQ(seen.count(engine::Turned::kTrembled), 16U);
}

TEST(Wiring, NothingIsExchangedWhereTheShaftTurnsOrStands) {
    EXPECT_FALSE(engine::wiresToSwap(engine::Turned::kForward, 0));
    EXPECT_FALSE(engine::wiresToSwap(engine::Turned::kNotAtAll, 0));
}

TEST(Trial, TheSafeSpeedsPeriodIsAtLeastOneAndAHalfTimesAsLong) {
    for (int period = 1; period <= engine::kTrialSlowest; ++period) {
        const int safe = engine::stepPeriod(engine::safeSpeed(period)).value();
        EXPECT_GE(2 * safe, 3 * period) << period;
        EXPECT_LE(2 * safe, 3 * period + 1) << period; // and no slower than whole milliseconds make it
    }
}

TEST(Trial, AMeasurementCorrectsTheUnits) {
    EXPECT_FLOAT_EQ(engine::correctedUnits(10, 100, 98.5F, true), 9.85F);
    EXPECT_FLOAT_EQ(engine::correctedUnits(-10, 100, 98.5F, true), -9.85F);
    EXPECT_FLOAT_EQ(engine::correctedUnits(10, 100, 98.5F, false), 10);
    EXPECT_FLOAT_EQ(engine::correctedUnits(1, 100, 20, false), 1);
    EXPECT_FLOAT_EQ(engine::correctedUnits(10, -100, -120, true), 12); // the way does not count
}

} // namespace
