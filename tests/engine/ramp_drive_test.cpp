#include "engine/ramp.h"
#include "tests/desk.h"

#include <cmath>

namespace {

/// A tuner of 200 steps/r and 12.5 units/r: 0.0625 units a step, which singles hold exactly. Slow 100, fast
/// 500 steps/s: 10 and 2 ms.
class RampDriveTest : public Desk {
  protected:
    static constexpr double kStep = 0.0625;

    void SetUp() override {
        startTuner();
        enter(f().lblMemAltaA, f().txtAltaVelA, "500");
        enter(f().lblMMGiro, f().txtMMGiro, "12.5");
        f().HScroll1.set(20); // 0.4 s: 120 steps
    }
    int steps() { return static_cast<int>(std::lround(f().sngPosA / kStep)); }
    /// Recalls a memory that holds `steps` steps of engine A, a multiple of 4, which two decimals hold.
    void recall(int steps) {
        const float before = f().sngPosA;
        storeMemory(1, static_cast<float>(steps * kStep), 0, "1.000");
        f().sngPosA = before;
        f().Option[1].userClick();
    }
    bool runs() { return f().Timer1.Enabled || f().Timer2.Enabled; }
    int runUntilItStands() {
        int milliseconds = 0;
        for (; runs() && milliseconds < 60'000; ++milliseconds)
            clock.advance(1);
        return milliseconds;
    }
};

TEST_F(RampDriveTest, ARecallSpeedsUpAndReachesItsTargetAtSlow) {
    recall(1000);
    EXPECT_EQ(f().Timer1.Interval, 2); // the selected speed's
    clock.advance(400);
    EXPECT_NEAR(steps(), 120, 1);
    clock.advance(100);
    EXPECT_NEAR(steps(), 170, 1);
    EXPECT_NEAR(runUntilItStands(), 2320 - 500, 2);
    EXPECT_EQ(steps(), 1000);
    recall(900); // back, 100 steps: a triangle
    EXPECT_NEAR(runUntilItStands(), 463, 2);
    EXPECT_EQ(steps(), 900);
}

TEST_F(RampDriveTest, WithoutRampTheClockKeepsTheIntervalExactly) {
    f().HScroll1.set(0);
    recall(1000);
    for (int n = 0; n < 3; ++n) {
        EXPECT_EQ(f().Timer1.period(), std::chrono::milliseconds(2));
        clock.advance(2);
        EXPECT_EQ(steps(), n + 1);
    }
}

TEST_F(RampDriveTest, ATargetInsideTheBrakingDistanceIsPassedAndComeBackToOnce) {
    recall(1000);
    clock.advance(500); // at full speed, step 170
    const int passed = steps();
    recall(200);
    int furthest = 0;
    while (runs()) {
        clock.advance(1);
        furthest = std::max(furthest, steps());
    }
    EXPECT_NEAR(furthest, passed + 120, 1);
    EXPECT_EQ(steps(), 200);

    recall(1000);
    clock.advance(500);
    recall(0); // behind
    runUntilItStands();
    EXPECT_EQ(steps(), 0);
}

TEST_F(RampDriveTest, ATargetThatWasPassedIsReachedFromBelowWhereThereIsBacklash) {
    inDialog<form::FrmGenSet>([](form::FrmGenSet& dialog) {
        dialog.txtCW1.Text = "a";
        dialog.txtCCW1.Text = "b";
        dialog.txtCW2.Text = "c";
        dialog.txtCCW2.Text = "d";
        dialog.txtBacklash1.Text = "20";
        dialog.cmdSalvaGenSet.Click.fire();
    });
    f().mnuGenSet.Click.fire();
    recall(1000);
    clock.advance(500); // at full speed
    recall(200);        // ahead, inside the braking distance
    int furthest = 0;
    int lowest = 1000; // since the turn
    while (runs()) {
        clock.advance(1);
        furthest = std::max(furthest, steps());
        lowest = f().Timer2.Enabled ? steps() : std::min(lowest, steps());
    }
    EXPECT_GT(furthest, 250);
    EXPECT_NEAR(lowest, 180, 1);
    EXPECT_EQ(steps(), 200);
    // Near 0 there is less room than the backlash, at 0 there is none: the way goes straight up.
    for (const int from : {8, 0}) {
        f().sngPosA = 50;
        f().cmdInd.Click.fire();
        clock.advance(300);
        f().cmdAlt.Click.fire();
        f().sngPosA = static_cast<float>(from * kStep);
        recall(12);
        runUntilItStands();
        EXPECT_EQ(steps(), 12) << from;
    }
}

TEST_F(RampDriveTest, AReleasedJogSlowsDownAndStopStopsAtOnce) {
    f().cmdAlta.Click.fire();
    f().cmdAvMan.MouseDown.fire();
    f().cmdAlta.Click.fire();
    clock.advance(500);
    const int released = steps();
    f().cmdAvMan.MouseUp.fire();
    EXPECT_TRUE(runs());
    EXPECT_NEAR(runUntilItStands(), 400, 3);
    EXPECT_NEAR(steps() - released, 120, 1);

    f().cmdAvMan.MouseDown.fire();
    clock.advance(500);
    const int stopped = steps();
    f().cmdAlt.Click.fire();
    clock.advance(1000);
    EXPECT_EQ(steps(), stopped);
    // From rest, and from slow.
    f().cmdAv.Click.fire();
    clock.advance(9);
    EXPECT_EQ(steps(), stopped);
    clock.advance(1);
    EXPECT_EQ(steps(), stopped + 1);
}

TEST_F(RampDriveTest, AReversalComesDownFirstAndSpeedsChangeEvenly) {
    f().cmdAv.Click.fire();
    f().cmdAlta.Click.fire();
    clock.advance(500);
    const int turned = steps();
    f().cmdInd.Click.fire();
    EXPECT_TRUE(f().Timer1.Enabled);
    clock.advance(399);
    EXPECT_NEAR(steps(), turned + 119, 1);
    clock.advance(20);
    EXPECT_TRUE(f().Timer2.Enabled);
    EXPECT_FALSE(f().Timer1.Enabled);
    f().cmdAlta.Click.fire();
    clock.advance(1000);
    EXPECT_EQ(f().Timer2.period(), std::chrono::milliseconds(2));
    f().cmdBassa.Click.fire();
    EXPECT_LT(f().Timer2.period(), std::chrono::milliseconds(3));
    clock.advance(500);
    EXPECT_EQ(f().Timer2.period(), std::chrono::milliseconds(10));
}

TEST_F(RampDriveTest, TheRampAdvancesByStepsThatWereMade) {
    recall(1000);
    clock.advance(100);
    port.holdBack(0xF); // no step is made, so the engine gets no faster
    const int stood = steps();
    const auto period = f().Timer1.period();
    clock.advance(1000);
    EXPECT_EQ(steps(), stood);
    EXPECT_EQ(f().Timer1.period(), period);
    port.holdBack(0);
    runUntilItStands();
    EXPECT_EQ(steps(), 1000);
}

} // namespace
