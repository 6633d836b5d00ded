#include "engine/increment.h"
#include "engine/side.h"
#include "tests/desk.h"

namespace {

constexpr int kTenth = 1, kOne = 2, kTen = 3, kStep = 4; // entries of cmbJog

TEST(IncrementalMove, IsWholeStepsAndAtLeastOne) {
    struct Case {
        double from, distance, step;
        bool up;
        double goal;
    };
    for (const Case& each : {Case{0, 1, 0.05, true, 1}, Case{5, 10, 0.05, false, -5},
                             Case{0, 1, 0.3, true, 0.9}, // the nearest step
                             Case{0, 0.1, 0.15, true, 0.15}, Case{2, 0.05, 0.05, false, 1.95}}) {
        const engine::IncrementalMove move =
            engine::incrementalMove(each.from, each.distance, each.step, each.up);
        EXPECT_NEAR(move.goal, each.goal, 1e-9);
        EXPECT_NEAR(move.target, each.goal, 0.005); // shows the same two decimals
        EXPECT_LT(std::abs(move.target - each.from), std::abs(each.goal - each.from));
    }
}

/// 200 steps/r, 10 units/r: a step is 0.05. 100 steps/s.
class Increments : public Desk {
  protected:
    void SetUp() override { startTuner(); }
    void choose(int entry) { f().cmbJogA.ListIndex = f().cmbJogB.ListIndex = entry; }
    void press(form::Button& jog) {
        jog.MouseDown.fire();
        jog.MouseUp.fire();
    }
    void runOut() { clock.advance(20'000); }
};

TEST_F(Increments, APressMovesByTheIncrementAndTheReleaseStopsNothing) {
    for (const auto& [entry, distance] :
         {std::pair{kTenth, 0.1F}, {kOne, 1.0F}, {kTen, 10.0F}, {kStep, 0.05F}}) {
        choose(entry);
        const float before = f().sngPosA;
        press(f().cmdAvMan);
        EXPECT_TRUE(f().Timer1.Enabled);
        EXPECT_EQ(f().lblUsoA.Caption, "Manual");
        runOut();
        EXPECT_FALSE(f().Timer1.Enabled);
        EXPECT_NEAR(f().sngPosA, before + distance, 1e-3);
        press(f().cmdIndMan);
        runOut();
        EXPECT_NEAR(f().sngPosA, before, 1e-3);
        press(f().cmdBIndMan);
        runOut();
        EXPECT_NEAR(f().sngPosB, -distance, 1e-3);
        f().sngPosB = 0;
    }
}

TEST_F(Increments, PressesAddUpInOneDirectionAndStartAnewInTheOther) {
    choose(kOne);
    press(f().cmdAvMan);
    clock.advance(50);
    press(f().cmdAvMan);
    press(f().cmdAvMan);
    runOut();
    EXPECT_NEAR(f().sngPosA, 3, 1e-3);
    press(f().cmdAvMan);
    clock.advance(100); // half the way
    press(f().cmdIndMan);
    runOut();
    EXPECT_NEAR(f().sngPosA, 2.5, 0.051);
}

TEST_F(Increments, StopEndsTheMoveAndHoldIsTheStart) {
    EXPECT_EQ(f().cmbJogA.ListIndex, 0);
    choose(kTen);
    press(f().cmdAvMan);
    clock.advance(100);
    f().cmdAlt.Click.fire();
    EXPECT_FALSE(f().Timer1.Enabled);
    choose(0);
    f().cmdAvMan.MouseDown.fire();
    clock.advance(5000);
    EXPECT_TRUE(f().Timer1.Enabled);
    f().cmdAvMan.MouseUp.fire();
    EXPECT_FALSE(f().Timer1.Enabled);
}

TEST_F(Increments, WhatCannotMoveSaysWhy) {
    choose(kTenth);
    f().sngMMGiroA = 0;
    press(f().cmdAvMan);
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(f().notice.Caption, "Engine 1 does not start: enter its mm/r");
    f().sngMMGiroA = 200; // a step is 1
    press(f().cmdAvMan);
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(f().notice.Caption, "Engine 1 cannot move by less than a step, which is 1");
}

TEST_F(Increments, EndsOfRunHold) {
    choose(kTen);
    f().sngPosA = 995;
    press(f().cmdAvMan);
    runOut();
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_NEAR(f().sngPosA, 998.5, 0.1);
}

TEST_F(Increments, AJogKeyMovesByThemToo) {
    f().strCW1 = "d";
    choose(kOne);
    f().onLetterDown('D', false);
    f().onLetterUp('D');
    EXPECT_TRUE(f().Timer1.Enabled);
    runOut();
    EXPECT_NEAR(f().sngPosA, 1, 1e-3);
}

TEST_F(Increments, TheRotorMovesByDegreesAndForgetsItsGoal) {
    f().mnuSat.Click.fire();
    f().txtPointAz.Text = "90";
    f().txtPointEl.Text = "0";
    f().cmdPoint.Click.fire();
    clock.advance(500);
    choose(kOne);
    press(f().cmdIndMan);
    const float before = f().sngPosAz;
    runOut();
    EXPECT_NEAR(f().sngPosAz, before - 1, 0.06);
}

TEST_F(Increments, TheOtherDirectionsSpeedIsNamedWhereItDiffers) {
    EXPECT_EQ(f().otherSpeedA.Caption, "");
    f().cmdAv.Click.fire();
    f().cmdAlta.Click.fire();
    EXPECT_EQ(f().otherSpeedA.Caption, "<< slow");
    f().cmdInd.Click.fire();
    EXPECT_EQ(f().otherSpeedA.Caption, ">> fast");
    f().cmdAlta.Click.fire();
    EXPECT_EQ(f().otherSpeedA.Caption, "");
}

} // namespace
