#include "rotor/path.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace std::chrono_literals;
using rotor::Direction;
using rotor::Machine;
using rotor::Path;

constexpr Machine kFull{{0, 360, 0, 90}, 6, 3};
constexpr Machine kOverlap{{-90, 360, 0, 90}, 6, 3};
constexpr Machine kBoth{{-90, 360, 0, 180}, 6, 3};
constexpr Machine kFlip{{0, 360, 0, 180}, 6, 3};

/// Takes the targets one after the other; an antenna that arrives at once.
Direction follow(Path& path, const std::vector<Direction>& targets, const Machine& machine,
                 Direction antenna) {
    for (const Direction& target : targets) {
        path.take(target, antenna, machine);
        antenna = path.aim(machine.ranges);
    }
    return antenna;
}

void expectAt(const Direction& direction, double azimuth, double elevation) {
    EXPECT_NEAR(direction.azimuth, azimuth, 1e-6);
    EXPECT_NEAR(direction.elevation, elevation, 1e-6);
}

TEST(Arc, IsTheAngleOnTheSky) {
    EXPECT_NEAR(rotor::arc({0, 0}, {90, 0}), 90, 1e-9);
    EXPECT_NEAR(rotor::arc({359.9, 0}, {0.1, 0}), 0.2, 1e-9);
    EXPECT_NEAR(rotor::arc({10, 89}, {190, 89}), 2, 1e-9);
    EXPECT_NEAR(rotor::arc({0, -90}, {77, 90}), 180, 1e-9);
    EXPECT_NEAR(rotor::arc({20, 120}, {200, 60}), 0, 1e-9); // over the top it is the same direction
    EXPECT_NEAR(rotor::arc({0, 0}, {0, 1e-7}), 1e-7, 1e-12);
}

TEST(Path, TakesThePositionThatHoldsTheRestOfThePass) {
    struct Case {
        const char* what;
        Machine machine;
        Direction antenna;
        std::vector<Direction> rising;
        double azimuth;
        double elevation;
    };
    for (const Case& each : {
             Case{"by time until the drift is known", kOverlap, {300, 0}, {{280, 0}}, 280, 0},
             Case{"eastward through north: from the overlap",
                  kOverlap,
                  {300, 0},
                  {{280, 0}, {283, 1}},
                  -77,
                  1},
             Case{"westward: from the top", kOverlap, {-80, 0}, {{282, 0}, {279, 1}}, 279, 1},
             Case{"westward through north: from above", kOverlap, {0, 0}, {{12, 0}, {9, 1}}, 9, 1},
             Case{"no overlap: the only one", kFull, {0, 0}, {{350, 0}, {353, 1}}, 353, 1},
             Case{"over on its back where that holds it", kFlip, {0, 0}, {{350, 0}, {353, 1}}, 173, 179},
             Case{"not over where it need not", kFlip, {0, 0}, {{20, 0}, {23, 1}}, 23, 1},
             Case{"equal: what both axes reach soonest", kBoth, {120, 170}, {{300, 0}, {303, 1}}, 123, 179},
         }) {
        Path path;
        const Direction end = follow(path, each.rising, each.machine, each.antenna);
        SCOPED_TRACE(each.what);
        expectAt(end, each.azimuth, each.elevation);
    }
}

TEST(Path, KeepsItsChoiceThroughThePassAndChoosesAnewForAnotherSatellite) {
    Path path;
    // Up at 250, where the full range is open, on to 275, where the overlap alone would hold more.
    Direction antenna = follow(
        path,
        {{250, 0}, {253, 2}, {256, 6}, {260, 10}, {265, 14}, {270, 18}, {276, 22}, {282, 26}, {288, 30}},
        kOverlap, {250, 0});
    expectAt(antenna, 288, 30);
    antenna = follow(path, {{294, 22}, {298, 14}, {301, 6}, {303, 3}, {305, 1}, {306, -1}}, kOverlap,
                     antenna); // sets
    expectAt(antenna, 306, 0);
    path.take({100, 40}, antenna, kOverlap);
    expectAt(path.aim(kOverlap.ranges), 100, 40);
}

TEST(Path, JitterTurnsNothingRound) {
    constexpr Machine kDeadZone{{0, 270, 0, 90}, 6, 3};
    struct Case {
        const char* what;
        Machine machine;
        std::vector<Direction> before;
        std::vector<Direction> jitter; // again and again
        int turns;                     // by more than 90 degrees, at most
    };
    for (const Case& each : {
             Case{"rising through north", kFull, {{356, 0}, {359, 1}}, {{359.9, 2}, {0.1, 2.1}}, 1},
             Case{"and westward", kFull, {{4, 0}, {1, 1}}, {{0.1, 2}, {359.9, 2.1}}, 1},
             Case{"rising in a dead zone", kDeadZone, {{311, 0}, {314, 1}}, {{314.9, 2}, {315.1, 2.1}}, 1},
             Case{"straight up in the overlap", kOverlap, {{300, 0}}, {{300.1, 2.5}, {299.9, 4.6}}, 0},
             Case{"setting in the overlap",
                  kOverlap,
                  {{250, 0}, {253, 3}, {258, 6}, {266, 8}, {274, 6}, {282, 3}, {290, -1}, {298, -4}},
                  {{300, -5.1}, {300.2, -4.9}},
                  0},
             Case{"a low pass that sets in the overlap",
                  kOverlap,
                  {{250, 0}, {253, 3}, {258, 4}, {266, 4}, {274, 3}, {282, 1}},
                  {{283, 0}, {283.1, 0.2}},
                  0},
         }) {
        SCOPED_TRACE(each.what);
        Path path;
        Direction antenna = follow(path, each.before, each.machine, each.before.front());
        int turns = 0;
        for (std::size_t n = 0; n < 10; ++n) {
            const Direction now = follow(path, {each.jitter[n % each.jitter.size()]}, each.machine, antenna);
            if (std::fabs(now.azimuth - antenna.azimuth) > 90) ++turns;
            antenna = now;
        }
        EXPECT_LE(turns, each.turns);
    }
}

TEST(Path, ThePassAfterIsChosenForOnceItRises) {
    Path path;
    Direction antenna = follow(path, {{280, 0}, {283, 2}, {289, 6}, {297, 3}, {303, -2}}, kOverlap, {280, 0});
    expectAt(antenna, -57, 0); // it kept what it had
    path.endPass();
    // Parked far from there; it comes up again where it has set, and both positions hold the whole pass.
    antenna = follow(path, {{302, -6.0}, {299, -5.5}, {296, -4.9}, {294, -4}}, kOverlap, {350, 0});
    expectAt(antenna, 294, 0);
}

TEST(Path, WaitsAtTheEndAndTurnsRoundForGood) {
    Path path;
    Direction antenna = follow(path, {{350, 20}, {353, 20}, {359.9, 20}}, kFull, {350, 20});
    for (const double jitter : {0.1, 359.9, 0.2, 1.0, 2.9}) {
        antenna = follow(path, {{jitter, 20}}, kFull, antenna);
        EXPECT_FALSE(path.pass(10s, antenna, kFull));
        EXPECT_GE(antenna.azimuth, 359.8);
    }
    EXPECT_TRUE(path.waiting(kFull.ranges));
    antenna = follow(path, {{3.5, 20}}, kFull, antenna);
    EXPECT_FALSE(path.pass(1999ms, antenna, kFull));
    EXPECT_TRUE(path.pass(1ms, antenna, kFull));
    expectAt(path.aim(kFull.ranges), 3.5, 20);
    antenna = follow(path, {{359.5, 20}}, kFull, path.aim(kFull.ranges)); // jitters back
    expectAt(antenna, 0, 20);
    EXPECT_FALSE(path.pass(10s, antenna, kFull));
}

TEST(Path, WhatNoPositionReachesIsFollowedToTheNearestEnd) {
    constexpr Machine kHalf{{0, 180, 0, 90}, 6, 3};
    Path path;
    path.take({200, 10}, {90, 10}, kHalf);
    expectAt(path.aim(kHalf.ranges), 180, 10);
    EXPECT_FALSE(path.pass(10s, {180, 10}, kHalf));
    Direction antenna =
        follow(path, {{230, 10}, {260, 10}, {264, 10}, {269, 10}, {271, 10}}, kHalf, {180, 10});
    EXPECT_FALSE(path.pass(10s, antenna, kHalf)); // 89 degrees from one end, 91 from the other
    expectAt(path.aim(kHalf.ranges), 180, 10);
    antenna = follow(path, {{275, 10}}, kHalf, antenna);
    EXPECT_TRUE(path.pass(10s, antenna, kHalf));
    expectAt(path.aim(kHalf.ranges), 0, 10);
}

TEST(Path, AHighPassGoesOverTheTopWhereTheRangeLetsIt) {
    // A target that climbs at 100 degrees, passes a degree beside the zenith, and sets at 280.
    const std::vector<Direction> high = {{100, 40}, {100.5, 60}, {101, 70}, {102, 79.5},
                                         {106, 86}, {145, 88.5}, {190, 89}, {235, 88.5},
                                         {268, 86}, {276, 80},   {279, 70}};
    Path over;
    Direction antenna{100, 40};
    double travel = 0;
    for (const Direction& target : high) {
        over.take(target, antenna, kFlip);
        const Direction aim = over.aim(kFlip.ranges);
        // The azimuth axis is too slow for the leap.
        const double move = std::clamp(aim.azimuth - antenna.azimuth, -5.0, 5.0);
        travel += std::abs(move);
        antenna = {antenna.azimuth + move, aim.elevation};
    }
    EXPECT_TRUE(over.flipped());
    EXPECT_LT(travel, 40);
    expectAt(over.aim(kFlip.ranges), 99, 110);
    constexpr Machine kNearlyFlip{{0, 360, 0, 170}, 6, 3};
    Path upright;
    follow(upright, high, kNearlyFlip, {100, 40});
    EXPECT_FALSE(upright.flipped()); // it could not come down on the other side
}

} // namespace
