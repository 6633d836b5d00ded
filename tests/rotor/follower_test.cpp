#include "rotor/follower.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using rotor::AxisState;
using rotor::AxisThresholds;
using rotor::Follower;
using rotor::Order;
using rotor::orderFor;

constexpr Order kStand{};
constexpr AxisThresholds kThresholds{.restart = 2, .fast = 10, .reverse = 1.5};

TEST(Follower, AnAxisStartsAtItsThresholdAndStopsOnItsTarget) {
    struct Case {
        const char* what;
        AxisState axis;
        double aim;
        AxisThresholds thresholds;
        Order order;
    };
    for (const Case& each : {
             Case{"stands within the restart", {100, 0.1, 0, 1}, 101.9, kThresholds, kStand},
             Case{"starts at the restart", {100, 0.1, 0, 1}, 102, kThresholds, {1, false, 102}},
             Case{"slow up to the distance", {100, 0.1, 0, 1}, 110, kThresholds, {1, false, 110}},
             Case{"fast beyond it", {100, 0.1, 0, 1}, 110.1, kThresholds, {1, true, 110.1}},
             Case{"always fast at 0", {100, 0.1, 0, 1}, 103, {2, 0, 0}, {1, true, 103}},
             Case{"restart 0 is one step", {100, 0.5, 0, 0}, 100.4, {0, 5, 0}, kStand},
             Case{"restart 0 is one step", {100, 0.5, 0, 0}, 99.5, {0, 5, 0}, {-1, false, 99.5}},
             Case{"never below a step", {100, 3, 0, 0}, 102.5, kThresholds, kStand},
             Case{"a reversal needs more", {100, 0.1, 0, 1}, 96.6, kThresholds, kStand},
             Case{"a reversal needs more", {100, 0.1, 0, 1}, 96.5, kThresholds, {-1, false, 96.5}},
             Case{"none before the first move", {100, 0.1, 0, 0}, 98, kThresholds, {-1, false, 98}},
             Case{"a target that moves on is followed",
                  {100, 0.1, 1, 1},
                  100.3,
                  kThresholds,
                  {1, false, 100.3}},
             Case{"reached", {100, 0.1, 1, 1}, 100, kThresholds, kStand},
             Case{"behind a running axis: it stops", {100, 0.1, 1, 1}, 98, kThresholds, kStand},
             Case{"far behind: it turns back", {100, 0.1, 1, 1}, 96, kThresholds, {-1, false, 96}},
         }) {
        EXPECT_EQ(orderFor(each.axis, each.aim, each.thresholds), each.order) << each.what;
    }
}

TEST(Follower, BelowTheHorizonAzimuthIsFollowedAndElevationWaits) {
    Follower follower;
    Follower::Settings settings;
    settings.machine.ranges.elevationMin = 2;
    const Follower::Axes axes{{50, 0.1, 0, 0}, {10, 0.1, 0, 0}};
    EXPECT_EQ(follower.look(0ms, axes, settings).azimuth, kStand); // no target yet
    follower.take({60, -5}, axes, settings);
    EXPECT_EQ(follower.look(200ms, axes, settings).azimuth, (Order{1, true, 60}));
    EXPECT_EQ(follower.look(200ms, axes, settings).elevation, (Order{-1, true, 2}));
    follower.take({61, -5.1}, axes, settings);
    EXPECT_TRUE(follower.below());
    EXPECT_EQ(follower.look(200ms, axes, settings).azimuth, kStand);
    EXPECT_EQ(follower.look(200ms, axes, settings).elevation, kStand);
}

} // namespace
