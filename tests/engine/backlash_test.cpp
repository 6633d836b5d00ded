#include "engine/backlash.h"

#include <gtest/gtest.h>

namespace engine {
namespace {

/// Makes the move as an engine would: to the dip, and then up to the target. Returns the lowest place.
int carryOut(Backlash& backlash, int& place, int target) {
    const int dip = place + backlash.dip(target - place, -place);
    while (place != dip)
        backlash.stepped(place < dip ? 1 : -1), place += place < dip ? 1 : -1;
    while (place != target)
        backlash.stepped(1), ++place;
    return dip;
}

TEST(Backlash, ReachesEveryPositionFromBelow) {
    Backlash backlash;
    backlash.setPlay(20);
    int place = 100;
    struct Move {
        int target, lowest;
        bool takenUp;
    };
    const Move moves[] = {
        {110, 90, true},                  // nothing is known at first: ten steps up do not take up all play
        {111, 111, true},                 // from now on small moves up need no dip
        {60, 40, true},                   // down, and back up
        {60, 60, true},                   // no move at all
        {59, 39, true},   {15, 0, false}, // the dip is cut at zero
        {16, 0, false},   {40, 40, true}, {0, 0, false}, {500, 500, true},
    };
    for (const Move& move : moves) {
        EXPECT_EQ(carryOut(backlash, place, move.target), move.lowest) << move.target;
        EXPECT_EQ(place, move.target);
        EXPECT_EQ(backlash.takenUp(), move.takenUp) << move.target;
    }
}

TEST(Backlash, CountsPlayStepByStep) {
    Backlash backlash;
    backlash.setPlay(5);
    for (int i = 0; i < 9; ++i)
        backlash.stepped(1);
    EXPECT_TRUE(backlash.takenUp());
    backlash.stepped(-1);
    backlash.stepped(-1);
    EXPECT_EQ(backlash.dip(1, -100), -4); // two steps of play are open: one step up does not close them
    EXPECT_EQ(backlash.dip(2, -100), 2);
    EXPECT_EQ(backlash.dip(-3, -100), -8);
    // An engine below the floor goes no lower than it must.
    EXPECT_EQ(backlash.dip(1, 2), 0);
    EXPECT_EQ(backlash.dip(-3, 2), -3);

    backlash.setPlay(0);
    EXPECT_EQ(backlash.dip(-3, -100), -3);
    EXPECT_TRUE(backlash.takenUp());
}

} // namespace
} // namespace engine
