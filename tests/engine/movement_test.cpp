#include "tests/desk.h"

namespace {

class MovementTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }
    void recall(float a, float b) {
        const float hereA = f().sngPosA, hereB = f().sngPosB;
        storeMemory(1, a, b, "7.050");
        f().sngPosA = hereA;
        f().sngPosB = hereB;
        f().Option[1].userClick();
    }
};

TEST_F(MovementTest, ShowsTargetWayAndTime) {
    recall(20, 0.5F);
    EXPECT_EQ(f().lblTargetA.Caption, "▸ 20.00");
    EXPECT_EQ(f().lblToGoA.Caption, "2 s"); // 400 steps at 200 a second
    EXPECT_EQ(f().barA.Value, 0);
    EXPECT_TRUE(f().barA.Visible);
    clock.advance(1100);
    EXPECT_EQ(f().lblToGoA.Caption, "1 s");
    EXPECT_NEAR(f().barA.Value, 55, 3);
    EXPECT_EQ(f().lblTargetB.Caption, ""); // has arrived
    clock.advance(2000);
    EXPECT_EQ(f().lblTargetA.Caption, "");
    EXPECT_EQ(f().lblToGoA.Caption, "");
    EXPECT_FALSE(f().barA.Visible);
    recall(10, 0);
    EXPECT_EQ(f().lblTargetA.Caption, "◂ 10.00");
}

TEST_F(MovementTest, CountsTheRampAndTheBacklash) {
    f().HScroll1.set(100); // 2 s from 100 to 200 steps/s: 300 steps
    recall(100, 0);
    EXPECT_EQ(f().lblToGoA.Caption, "11 s"); // 2 s up and 2 s down, and 1400 steps at 200 a second
    clock.advance(1500);
    EXPECT_EQ(f().lblToGoA.Caption, "10 s");
    clock.advance(12'000);
    EXPECT_NEAR(f().sngPosA, 100, 0.06);
    f().HScroll1.set(0);
    settings.sections["engine-1"]["backlash"] = "100"; // 5 mm
    startTuner();
    f().sngPosA = 50;
    recall(40, 0);
    EXPECT_EQ(f().lblTargetA.Caption, "◂ 40.00");
    EXPECT_EQ(f().lblToGoA.Caption, "3 s"); // 300 steps fast, and 100 back up slowly
    clock.advance(1600);
    EXPECT_EQ(f().lblTargetA.Caption, "▸ 40.00");
}

TEST_F(MovementTest, NamesDirectionAndEndOfTheRange) {
    f().cmdAvMan.MouseDown.fire();
    EXPECT_EQ(f().lblTargetA.Caption, "▸");
    f().sngPosA = 998.98F;
    clock.advance(100);
    EXPECT_EQ(f().lblTargetA.Caption, "");
    EXPECT_EQ(f().lblToGoA.Caption, "end of range");
    f().cmdAvMan.MouseUp.fire();
    EXPECT_EQ(f().lblToGoA.Caption, "end of range");
    f().cmdIndMan.MouseDown.fire();
    EXPECT_EQ(f().lblTargetA.Caption, "◂");
    EXPECT_EQ(f().lblToGoA.Caption, "");
}

TEST_F(MovementTest, ShowsTheAntennasWayAndItsEnd) {
    f().mnuSat.Click.fire();
    f().txtPointAz.Text = "20";
    f().txtPointEl.Text = "0";
    f().cmdPoint.Click.fire();
    clock.advance(100);
    EXPECT_EQ(f().lblTargetA.Caption, "▸ 20.00");
    EXPECT_EQ(f().lblToGoA.Caption, "2 s");
    EXPECT_TRUE(f().barA.Visible);
    clock.advance(5000);
    EXPECT_EQ(f().lblTargetA.Caption, "");
    f().sngPosAz = 0;
    f().cmdIndMan.MouseDown.fire();
    clock.advance(100);
    f().cmdIndMan.MouseUp.fire();
    EXPECT_EQ(f().lblToGoA.Caption, "end of range");
    f().mnuCoilTuner.Click.fire(); // at 0 too, which is no end there
    clock.advance(100);
    EXPECT_EQ(f().lblToGoA.Caption, "");
}

TEST_F(MovementTest, SaysWhatFollowsFromTheParameters) {
    EXPECT_EQ(f().lblStepA.Caption, "0.05 mm a step, 100 to 200 steps/s");
    enter(f().lblMemAltaA, f().txtAltaVelA, "700"); // a step takes 1 ms
    EXPECT_EQ(f().lblStepA.Caption, "0.05 mm a step, 100 to 1000 steps/s");
    enter(f().lblMemSteps, f().txtSteps, "0");
    EXPECT_EQ(f().lblStepA.Caption, "steps/r is 0: it cannot run");
    EXPECT_EQ(f().lblStepA.ForeColor, form::kAmber);
}

TEST_F(MovementTest, LampAndCountdownTellOfTheCoils) {
    f().chkAutoCmdOff.userClick(); // 8 s
    EXPECT_EQ(f().shpCoils.FillColor, form::kBlack);
    poll();
    EXPECT_EQ(f().lblOffIn.Caption, "");
    f().cmdAvMan.MouseDown.fire();
    clock.advance(100);
    EXPECT_EQ(f().shpCoils.FillColor, form::kRed);
    f().cmdAvMan.MouseUp.fire();
    clock.advance(1000);
    EXPECT_EQ(f().shpCoils.FillColor, form::kRed);
    EXPECT_TRUE(f().lblOffIn.Caption.get().starts_with("off in ")) << f().lblOffIn.Caption.get();
    clock.advance(9000);
    EXPECT_EQ(f().shpCoils.FillColor, form::kBlack);
    EXPECT_EQ(f().lblOffIn.Caption, "");
}

} // namespace
