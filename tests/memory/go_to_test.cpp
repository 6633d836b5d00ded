#include "form/go_to.h"
#include "tests/desk.h"

namespace {

class GoToTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }

    /// Types both positions and presses Go; returns what the dialog then says, empty if it has closed.
    std::string goTo(const std::string& a, const std::string& b) {
        std::string error;
        inDialog<form::FrmGoTo>([&](form::FrmGoTo& dialog) {
            bool closed = false;
            dialog.onUnload = [&closed] { closed = true; };
            dialog.txtGoToA.Text = a;
            dialog.txtGoToB.Text = b;
            dialog.cmdGo.Click.fire();
            error = dialog.lblGoToError.Caption;
            EXPECT_EQ(closed, error.empty()) << a << ' ' << b;
        });
        f().mnuGoTo.Click.fire();
        return error;
    }
    void runOut() { clock.advance(60'000); }
};

TEST_F(GoToTest, DrivesOneEngineOrBoth) {
    EXPECT_EQ(goTo("12.35", "3"), "");
    runOut();
    EXPECT_NEAR(f().sngPosA, 12.35, 0.051);
    EXPECT_NEAR(f().sngPosB, 3, 0.051);
    EXPECT_EQ(goTo("", "1,5"), "");
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer2.Enabled);
    EXPECT_TRUE(f().Timer3.Enabled);
    EXPECT_EQ(f().lblUsoB.Caption, "Manual");
    runOut();
    EXPECT_NEAR(f().sngPosB, 1.5, 0.051);
}

TEST_F(GoToTest, SaysWhatIsWrongAndMovesNothing) {
    EXPECT_EQ(goTo("", ""), "Type a position");
    EXPECT_EQ(goTo("1-2", ""), "\"1-2\" is not a position. Example: 12.35");
    EXPECT_EQ(goTo("999", ""), "A position lies between -999 and 999");
    f().intStepsB = 0;
    EXPECT_EQ(goTo("5", "5"), "Engine 2 does not start: enter its steps/r");
    EXPECT_TRUE(f().cmdOff.Enabled);
}

TEST_F(GoToTest, RefusesBelowZeroAsARecallDoes) {
    f().sngPosA = -1;
    f().Label2.Caption = "-1.00";
    inDialog<form::FrmGoTo>([&](form::FrmGoTo& dialog) {
        dialog.txtGoToA.Text = "5";
        dialog.cmdGo.Click.fire();
    });
    f().mnuGoTo.Click.fire();
    ASSERT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_TRUE(f().cmdOff.Enabled);
}

TEST_F(GoToTest, AutomaticRecallDoesNotTakeTheEnginesBack) {
    storeMemory(1, 20, 20, "14.000");
    f().sngPosA = f().sngPosB = 20;
    connectN1mm();
    tune(1'400'000);
    f().chkAutoMemOnOff.Value = 1;
    poll();
    poll();
    runOut();
    EXPECT_EQ(goTo("5", ""), "");
    EXPECT_EQ(f().lblAutoMemOnOff.Caption, "Semi Auto");
    runOut();
    EXPECT_NEAR(f().sngPosA, 5, 0.051);
}

TEST_F(GoToTest, TurnsTheRotorAsPointDoes) {
    f().mnuSat.Click.fire();
    EXPECT_EQ(goTo("30", ""), "");
    runOut();
    EXPECT_NEAR(f().sngPosAz, 30, 0.06);
    EXPECT_NEAR(f().sngPosEl, 0, 0.06);
    EXPECT_EQ(goTo("", "500"), "This direction is outside the range of the rotator");
}

} // namespace
