#include "engine/ramp.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace std::chrono_literals;
using engine::Pace;
using engine::Period;
using engine::RampCurve;

// 100 to 500 steps/s in 0.4 s: 1000 steps/s each second, over (100 + 500) / 2 * 0.4 = 120 steps.
const RampCurve kEven(10, 2, 400ms);

struct Move {
    std::vector<Period> intervals;
    Period time{};
    std::int64_t highest = 0;
    std::int64_t last = 0;
};

/// Makes `steps` steps towards a target so far away.
Move move(const RampCurve& curve, std::int64_t steps, std::int64_t level = 0) {
    Move made;
    for (std::int64_t toGo = steps; toGo > 0; --toGo) {
        const std::int64_t next = engine::nextLevel(curve, level, Pace::kFast, toGo);
        made.intervals.push_back(curve.interval(level, next));
        made.time += made.intervals.back();
        level = next;
        made.highest = std::max(made.highest, level);
    }
    made.last = level;
    return made;
}

TEST(Ramp, RisesEvenlyInTheTimeSet) {
    ASSERT_EQ(kEven.levels(), 120);
    EXPECT_EQ(kEven.interval(0, 0), 10ms);
    EXPECT_EQ(kEven.interval(120, 120), 2ms);
    // The first step: x = 100 t + 500 t^2 = 1.
    EXPECT_NEAR(static_cast<double>(kEven.interval(0, 1).count()), (std::sqrt(12000) - 100) * 1e6, 2);
    const Move longMove = move(kEven, 1000);
    // 120 steps up in 400 ms, 760 at 2 ms, 120 down in 400 ms.
    EXPECT_NEAR(static_cast<double>(longMove.time.count()), 2320e6, 500);
    EXPECT_EQ(longMove.highest, 120);
    EXPECT_EQ(longMove.last, 0);
    Period up{};
    for (int step = 0; step < 120; ++step)
        up += longMove.intervals[static_cast<std::size_t>(step)];
    EXPECT_NEAR(static_cast<double>(up.count()), 400e6, 200);
}

TEST(Ramp, AShortMoveIsATriangle) {
    struct Case {
        std::int64_t steps, highest;
        double milliseconds;
    };
    const auto up = [](double steps) { return (std::sqrt(10'000 + 2000 * steps) - 100); };
    for (const Case& each :
         {Case{1, 0, 10}, Case{2, 1, 2 * up(1)}, Case{100, 50, 2 * up(50)},
          Case{101, 50, 2 * up(50) + 1000 / std::sqrt(110'000)}, Case{240, 120, 800}, Case{241, 120, 802}}) {
        const Move made = move(kEven, each.steps);
        EXPECT_EQ(made.highest, each.highest) << each.steps;
        EXPECT_EQ(made.last, 0) << each.steps;
        EXPECT_NEAR(static_cast<double>(made.time.count()), each.milliseconds * 1e6, 300) << each.steps;
        for (std::size_t n = 0; n < made.intervals.size(); ++n)
            EXPECT_EQ(made.intervals[n], made.intervals[made.intervals.size() - 1 - n]) << each.steps;
    }
}

TEST(Ramp, NoIntervalIsShorterThanFastsAndAllMovesEndAtSlow) {
    for (const auto& [slow, fast, time] : {std::tuple{7, 3, 20ms},
                                           {10, 1, 2000ms},
                                           {100, 99, 20ms},
                                           {1000, 1, 20ms},
                                           {2, 1, 1980ms},
                                           {13, 5, 340ms}}) {
        const RampCurve curve(slow, fast, time);
        for (const std::int64_t steps : {1, 2, 3, 10, 11, 97, 5000}) {
            const Move made = move(curve, steps);
            EXPECT_EQ(made.last, 0);
            for (const Period& interval : made.intervals) {
                ASSERT_GE(interval, std::chrono::milliseconds(fast)) << slow << " " << fast;
                ASSERT_LE(interval, std::chrono::milliseconds(slow)) << slow << " " << fast;
            }
            const double forecast = static_cast<double>(curve.timeFor(steps, 0).count());
            EXPECT_NEAR(static_cast<double>(made.time.count()) / forecast, 1, 1e-6) << slow << " " << steps;
        }
    }
}

TEST(Ramp, ThereIsNoneWithoutTimeOrRoomBetweenTheSpeeds) {
    EXPECT_TRUE(RampCurve(10, 2, 0ms).flat());
    EXPECT_TRUE(RampCurve(2, 2, 400ms).flat());
    EXPECT_TRUE(RampCurve(2, 10, 400ms).flat());
    EXPECT_TRUE(RampCurve(10, 0, 400ms).flat());
    EXPECT_FALSE(RampCurve(3, 2, 20ms).flat());
}

TEST(Ramp, ATargetInsideTheBrakingDistanceIsPassed) {
    std::int64_t level = 120;
    int made = 0;
    for (std::int64_t toGo = 30; level > 0; --toGo, ++made) {
        const std::int64_t next = engine::nextLevel(kEven, level, Pace::kFast, toGo);
        ASSERT_EQ(next, level - 1);
        level = next;
    }
    EXPECT_EQ(made, 120); // 90 steps too far
    EXPECT_EQ(kEven.timeFor(30, 120), kEven.timeFor(120, 120));
    // Just enough: it comes to rest on the target.
    EXPECT_EQ(move(kEven, 120, 120).last, 0);
    EXPECT_EQ(move(kEven, 121, 120).last, 0);
}

TEST(Ramp, SlowAndStopComeDownWhateverIsAhead) {
    for (const Pace pace : {Pace::kSlow, Pace::kStop}) {
        EXPECT_EQ(engine::nextLevel(kEven, 120, pace, std::nullopt), 119);
        EXPECT_EQ(engine::nextLevel(kEven, 7, pace, 1000), 6);
        EXPECT_EQ(engine::nextLevel(kEven, 0, pace, std::nullopt), 0);
    }
    // Without a target fast is reached and kept.
    EXPECT_EQ(engine::nextLevel(kEven, 119, Pace::kFast, std::nullopt), 120);
    EXPECT_EQ(engine::nextLevel(kEven, 120, Pace::kFast, std::nullopt), 120);
    // Other speeds on the way: the level that is no faster.
    EXPECT_EQ(kEven.levelOf(2ms), 120);
    EXPECT_EQ(kEven.levelOf(1ms), 120);
    EXPECT_EQ(kEven.levelOf(10ms), 0);
    EXPECT_EQ(kEven.levelOf(4ms), 26); // 250 steps/s: (62500 - 10000) / 2000 = 26.25
}

} // namespace
