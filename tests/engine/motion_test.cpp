#include "tests/desk.h"

namespace {

class MotionTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }
};

TEST_F(MotionTest, RunCommandsDriveExactlyOneTimerOfTheirEngine) {
    const std::tuple<form::Button*, form::Timer*, form::Timer*, form::Int16*, int> commands[] = {
        {&f().cmdAv, &f().Timer1, &f().Timer2, &f().intDirA, 1},
        {&f().cmdInd, &f().Timer2, &f().Timer1, &f().intDirA, 2},
        {&f().cmdAvB, &f().Timer4, &f().Timer3, &f().intDirB, 1},
        {&f().cmdIndB, &f().Timer3, &f().Timer4, &f().intDirB, 2}};
    for (const auto& [button, on, off, direction, value] : commands) {
        button->Click.fire();
        EXPECT_TRUE(on->Enabled) << button->name();
        EXPECT_FALSE(off->Enabled) << button->name();
        EXPECT_EQ(*direction, value) << button->name();
        EXPECT_FALSE(f().cmdOff.Enabled);
    }
    f().cmdAlt.Click.fire();
    EXPECT_FALSE(f().Timer2.Enabled);
    EXPECT_FALSE(f().cmdOff.Enabled); // B still runs
    f().cmdAltB.Click.fire();
    EXPECT_TRUE(f().cmdOff.Enabled);
    EXPECT_EQ(f().intDirB, 2); // kept for the next reversal
}

TEST_F(MotionTest, ReversalPicksThePhasesUpBesideTheLastOnes) {
    f().cmdAv.Click.fire();
    clock.advance(20); // phases 1 and 2
    EXPECT_EQ(f().intFaseA, 3);
    f().cmdAv.Click.fire(); // the same direction again
    EXPECT_EQ(f().intFaseA, 3);
    f().cmdInd.Click.fire();
    EXPECT_EQ(f().intFaseA, 1);
    EXPECT_EQ(f().intFaseHalfA, -1);
    f().intUltFaseB = 4;
    f().intUltFaseHalfB = 8;
    f().intDirB = form::kBackward;
    f().cmdAvB.Click.fire();
    EXPECT_EQ(f().intFaseB, 5);
    EXPECT_EQ(f().intFaseHalfB, 9);
    f().intUltFaseB = 1;
    f().cmdIndB.Click.fire();
    EXPECT_EQ(f().intFaseB, 0);
}

TEST_F(MotionTest, SpeedButtonsSetTheTimerOfTheCurrentDirection) {
    f().cmdAlta.Click.fire(); // idle, no direction yet
    EXPECT_TRUE(f().bolVelAltaA);
    EXPECT_EQ(f().cmdAlta.BackColor, form::kRed);
    EXPECT_EQ(f().Timer1.Interval, 10);
    f().cmdAv.Click.fire();
    f().cmdAlta.Click.fire();
    EXPECT_EQ(f().Timer1.Interval, 5);
    EXPECT_EQ(f().Timer2.Interval, 10);
    f().cmdInd.Click.fire(); // the other timer has kept the slow period
    EXPECT_EQ(f().cmdBassa.BackColor, form::kRed);
    EXPECT_EQ(f().cmdAlta.BackColor, form::kButtonFace);
    f().cmdIndB.Click.fire();
    f().cmdAltaB.Click.fire();
    EXPECT_EQ(f().Timer3.Interval, 5);
    EXPECT_EQ(f().Timer4.Interval, 10);
    f().cmdBassaB.Click.fire();
    EXPECT_EQ(f().Timer3.Interval, 10);
}

TEST_F(MotionTest, AJogRunsWhileItsButtonIsHeld) {
    f().Option[2].Value.load(true);
    f().cmdAvMan.MouseDown.fire();
    EXPECT_EQ(f().lblUsoA.Caption, "Manual");
    EXPECT_EQ(f().lblUsoB.Caption, "");
    EXPECT_FALSE(f().Option[2].Value);
    clock.advance(100);
    f().cmdAvMan.MouseUp.fire();
    clock.advance(100);
    EXPECT_EQ(f().Label2.Caption, "0.50");
    f().cmdBIndMan.MouseDown.fire();
    clock.advance(50);
    f().cmdBIndMan.MouseUp.fire();
    EXPECT_EQ(f().Label8.Caption, "-0.25");
}

TEST_F(MotionTest, AJogTakesOverFromAutomaticRecallAndFromARecall) {
    connectN1mm();
    f().chkFastMemory.userClick();
    f().chkAutoMemOnOff.userClick();
    f().Option[2].Value.load(true);
    f().bolMemA = true;
    f().sngTargetA = 5;
    f().cmdIndMan.MouseDown.fire();
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked());
    EXPECT_EQ(f().lblAutoMemOnOff.Caption, "Manual");
    EXPECT_TRUE(f().chkFastMemory.ticked()); // not the user's own untick
    EXPECT_TRUE(f().Option[2].Value);        // fast store needs the selection
    clock.advance(50);
    EXPECT_TRUE(f().Timer2.Enabled); // the old target does not end it
}

TEST_F(MotionTest, ABoxReleasesAJog) {
    f().cmdAvMan.MouseDown.fire();
    dialogs.whileOpen = [this] { EXPECT_FALSE(f().Timer1.Enabled); };
    f().chkHalfStepB.userClick();
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
}

TEST_F(MotionTest, InSatelliteRotorAReleasedJogRunsOn) {
    f().mnuSat.Click.fire();
    f().cmdAvMan.MouseDown.fire();
    f().cmdAvMan.MouseUp.fire();
    EXPECT_TRUE(f().Timer1.Enabled);
    EXPECT_FALSE(f().bolManualA);
    f().txtBassaVelA.Text = "";
    f().cmdAlt.Click.fire(); // a half-typed entry does not keep a stop from stopping
    EXPECT_FALSE(f().Timer1.Enabled);
    f().txtBassaVelA.Text = "77";
    f().cmdAlt.Click.fire();
    EXPECT_EQ(f().intVelRotA, 77);
    EXPECT_TRUE(dialogs.takeMessages().empty());
    f().chkRotOnOff.Value = 1;
    f().cmdAvMan.MouseDown.fire();
    EXPECT_FALSE(f().Timer1.Enabled); // automatic following owns the engine
}

TEST_F(MotionTest, ResetDeclaresZeroOnlyWhileTheEngineStands) {
    f().sngPosA = 12;
    f().cmdAv.Click.fire();
    dialogs.okAnswers = {true};
    f().cmdResetA.Click.fire();
    EXPECT_EQ(f().sngPosA, 12);
    EXPECT_TRUE(dialogs.takeMessages().empty());
    f().cmdAlt.Click.fire();
    dialogs.okAnswers = {false, true};
    f().cmdResetA.Click.fire();
    EXPECT_EQ(f().sngPosA, 12);
    f().cmdResetA.Click.fire();
    EXPECT_EQ(f().sngPosA, 0);
    EXPECT_EQ(f().Label2.Caption, "0.00");
}

} // namespace
