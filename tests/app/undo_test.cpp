#include "tests/desk.h"

namespace {

class UndoTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }

    void undo() { f().mnuUndo.Click.fire(); }
    void redo() { f().mnuRedo.Click.fire(); }
    const std::string& notice() { return f().notice.Caption; }
    void newValue(form::Label& position, const char* whole) {
        inDialog<form::FrmInsPosition>([whole](form::FrmInsPosition& dialog) {
            dialog.txtInt.Text.load(whole);
            dialog.txtInt.KeyDown.fire(form::TextBox::kEnter);
        });
        position.DblClick.fire();
    }
    /// Jogs engine 1: 5 mm in a second at 100 steps/s.
    void jog(form::Button& button, int milliseconds) {
        button.MouseDown.fire();
        clock.advance(milliseconds);
        button.MouseUp.fire();
    }
    void stop() {
        f().cmdAlt.Click.fire();
        f().cmdAltB.Click.fire();
    }
};

TEST_F(UndoTest, ADeclaredPositionKeepsTheStepsMadeSince) {
    jog(f().cmdAvMan, 1000);
    EXPECT_NEAR(f().sngPosA, 5, 0.001);
    newValue(f().Label2, "100");
    EXPECT_EQ(notice(), "New Value of Engine 1: Ctrl+Z takes it back");
    jog(f().cmdAvMan, 2000);
    jog(f().cmdIndMan, 1000);
    EXPECT_NEAR(f().sngPosA, 105, 0.01);
    dialogs.okAnswers.push_back(true);
    f().cmdResetA.Click.fire();
    EXPECT_EQ(f().sngPosA, 0);
    jog(f().cmdIndMan, 200);
    undo();
    EXPECT_NEAR(f().sngPosA, 104, 0.01);
    EXPECT_EQ(notice(), "Taken back: Reset 1");
    EXPECT_EQ(f().Label2.Caption, "104.00");
    undo();
    EXPECT_NEAR(f().sngPosA, 9, 0.01);
    EXPECT_FALSE(f().mnuUndo.Enabled);
    jog(f().cmdAvMan, 1000);
    redo();
    redo();
    // 0 at the reset, 4 mm forward since; a reversal takes a step.
    EXPECT_NEAR(f().sngPosA, 4, 0.06);
    EXPECT_EQ(f().mnuUndo.Caption, "&Undo: Reset 1");
}

TEST_F(UndoTest, WhereUnitsOrStepModeChangedThePositionStays) {
    const std::function<void()> changes[] = {
        [this] { enter(f().lblMMGiro, f().txtMMGiro, "5"); },
        [this] { enter(f().lblMemSteps, f().txtSteps, "400"); },
        [this] {
            f().chkHalfStep.userClick();
            f().chkHalfStep.userClick(); // steps in between would not have been counted alike
        },
    };
    for (const auto& change : changes) {
        startTuner();
        newValue(f().Label2, "100");
        newValue(f().Label8, "50");
        change();
        EXPECT_NE(notice().find("this stays: New Value of Engine 1"), std::string::npos) << notice();
        undo();
        EXPECT_EQ(f().sngPosB, 0);
        EXPECT_EQ(f().sngPosA, 100);
        EXPECT_FALSE(f().mnuUndo.Enabled);
    }
}

TEST_F(UndoTest, IsRefusedWhileAnEngineRuns) {
    newValue(f().Label2, "100");
    f().cmdBAvMan.MouseDown.fire();
    undo();
    EXPECT_EQ(f().sngPosA, 100);
    EXPECT_EQ(notice(), "An engine runs: stop it first, then undo");
    f().cmdBAvMan.MouseUp.fire();
    undo();
    EXPECT_EQ(f().sngPosA, 0);
}

TEST_F(UndoTest, MemoriesComeBackWithTheirRecords) {
    storeMemory(3, 10, 20, "7.050 west");
    storeMemory(3, 30, 40, "14.020");
    undo();
    EXPECT_EQ(f().strMemPosA(3), "010.00");
    EXPECT_EQ(f().lblFr[3].Caption, "7.050 ");
    EXPECT_EQ(f().Option[3].ToolTip, "7.050 west (010.00-020.00)");
    EXPECT_EQ(file.read().text(23), "7.050 west");
    dialogs.textAnswers.emplace_back("7.100");
    f().onRenameMemory(3);
    EXPECT_EQ(dialogs.lastProposed, "7.050 west");
    EXPECT_EQ(dialogs.lastLongest, 10U);
    EXPECT_EQ(file.read().text(23), "7.100");
    f().onClearMemory(3);
    EXPECT_FALSE(f().Option[3].Enabled);
    EXPECT_EQ(file.read().text(3) + file.read().text(73) + file.read().text(23), "");
    EXPECT_EQ(notice(), "Memory 3 cleared: Ctrl+Z takes it back");
    undo();
    undo();
    EXPECT_EQ(f().lblFr[3].Caption, "7.050 ");
    undo();
    EXPECT_FALSE(f().Option[3].Enabled);
    redo();
    EXPECT_EQ(file.read().text(73), "020.00");
}

TEST_F(UndoTest, FastStoreIsTakenBack) {
    storeMemory(1, 10, 20, "7.050");
    connectN1mm();
    f().chkFastMemory.userClick();
    f().chkAutoCmdOff.userClick();
    f().Option[1].userClick();
    stop();
    jog(f().cmdAvMan, 400);
    clock.advance(10'000);
    EXPECT_EQ(f().strMemPosA(1), "012.00");
    EXPECT_EQ(notice(), "Memory 1 stored by fast store: Ctrl+Z takes it back");
    undo();
    EXPECT_EQ(file.read().text(1), "010.00");
    EXPECT_EQ(file.read().text(21), "7.050");
}

TEST_F(UndoTest, AFunctionSwitchGivesThePositionsBack) {
    newValue(f().Label2, "100");
    storeMemory(1, 100, 0, "7.050");
    f().Option[1].userClick();
    f().mnuAmpli.Click.fire();
    EXPECT_EQ(f().sngPosA, 0);
    EXPECT_EQ(notice(), "Function Tune & Load: Ctrl+Z takes it back");
    EXPECT_EQ(f().mnuUndo.Caption, "&Undo: Function Tune && Load");
    jog(f().cmdAvMan, 1000);
    undo();
    EXPECT_EQ(f().intFunzione, form::kCoilTuner);
    EXPECT_NEAR(f().sngPosA, 105, 0.001);
    EXPECT_EQ(f().Label2.Caption, "105.00");
    EXPECT_EQ(f().lblUsoB.Caption, "7.050");
    EXPECT_EQ(port.data(), 255); // outputs off
    redo();
    EXPECT_EQ(f().intFunzione, form::kTuneAndLoad);
    EXPECT_NEAR(f().sngPosA, 5, 0.001);
    undo();
    undo(); // the memory
    undo(); // New Value, with 5 mm since
    EXPECT_NEAR(f().sngPosA, 5, 0.001);
}

TEST_F(UndoTest, LoadConfigGoesBackWithThePositions) {
    storeMemory(1, 10, 20, "7.050");
    dialogs.textAnswers.emplace_back("loop");
    const std::string loop = (folder.path() / "loop.cfg").string();
    dialogs.fileAnswers.emplace_back(loop);
    f().mnuSaveConfig.Click.fire();
    EXPECT_EQ(dialogs.lastLongest, 8U);
    EXPECT_EQ(dialogs.lastPlace, loop);
    clock.advance(500);
    EXPECT_EQ(notice(), "Configuration loop saved in " + loop);
    storeMemory(1, 30, 40, "14.020");
    enter(f().lblMMGiro, f().txtMMGiro, "5");
    newValue(f().Label2, "100");
    dialogs.fileAnswers.emplace_back(loop);
    f().mnuLoadConfig.Click.fire();
    EXPECT_EQ(f().lblFr[1].Caption, "7.050");
    EXPECT_EQ(f().sngMMGiroA, 10);
    EXPECT_EQ(f().sngPosA, 0);
    jog(f().cmdAvMan, 1000); // 100 steps: 2.5 mm with 5 mm a turn
    undo();
    EXPECT_EQ(f().lblFr[1].Caption, "14.020");
    EXPECT_EQ(f().sngMMGiroA, 5);
    EXPECT_NEAR(f().sngPosA, 102.5, 0.001);
    EXPECT_EQ(f().intFunzione, form::kCoilTuner);
    undo();                                // New Value: its units are the same again
    EXPECT_NEAR(f().sngPosA, 32.5, 0.001); // stood at 30 when the value was entered
    redo();
    redo();
    EXPECT_EQ(f().lblFr[1].Caption, "7.050");
}

} // namespace
