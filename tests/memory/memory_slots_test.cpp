#include "tests/desk.h"

namespace {

class MemoryTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }
    const simulated::Dialogs::Message kEndOfRun{"Reset the system to zero", "End of run", true};
};

TEST_F(MemoryTest, StoringWritesThreeRecordsAndNothingElse) {
    f().sngPosA = 12.35F;
    f().sngPosB = 101;
    const std::string before = bytesOf(file.path());
    dialogs.okAnswers = {true};
    dialogs.textAnswers = {"21.010 with an aerial"};
    f().lblMem[3].DblClick.fire();
    EXPECT_EQ(dialogs.lastInput.text, "Insert a label for this memory");
    EXPECT_EQ(dialogs.lastInput.title, "Memory label (Max 10 characters)");
    EXPECT_EQ(f().lblFr[3].Caption, "21.010");
    EXPECT_EQ(f().Option[3].ToolTip, "21.010 wit (012.35-101.00)");
    EXPECT_TRUE(f().Option[3].Enabled);
    auto records = file.read();
    EXPECT_EQ(records.text(3), "012.35");
    EXPECT_EQ(records.text(73), "101.00");
    EXPECT_EQ(records.text(23), "21.010 wit");
    std::string after = bytesOf(file.path());
    for (const std::size_t record : {3U, 23U, 73U})
        after.replace((record - 1) * 12, 12, 12, '\0');
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_EQ(after.find_first_not_of('\0', before.size()), std::string::npos);

    // The second time the box shows the old data, with the end of A's text for B.
    f().sngPosA = 1;
    dialogs.takeMessages();
    f().lblMem[3].DblClick.fire();
    EXPECT_EQ(dialogs.takeMessages(), (std::vector<simulated::Dialogs::Message>{
                                          {"Old Engine data: A=012.3 B=12.35. New Engine data: A=0 B=0 ",
                                           "Confirm new Data Memory #3 ?", false}}));
    EXPECT_EQ(f().strMemPosA(3), "012.35"); // not confirmed
}

TEST_F(MemoryTest, CancellingTheLabelStoresWithoutOne) {
    dialogs.okAnswers = {true};
    dialogs.textAnswers = {std::nullopt};
    f().lblMem[10].DblClick.fire();
    EXPECT_EQ(dialogs.takeMessages().at(0).title, "Confirm new Data Memory #10 ?");
    EXPECT_EQ(f().lblFr[10].Caption, "");
    EXPECT_EQ(file.read().text(80), "000.00");
    EXPECT_TRUE(f().Option[10].Enabled);
}

TEST_F(MemoryTest, ARecallDrivesBothEnginesToTheStoredPositions) {
    storeMemory(1, 3, 0.5F, "7.050");
    f().sngPosA = 0;
    f().sngPosB = 2;
    f().Option[4].Value.load(true);
    f().Option[1].userClick();
    EXPECT_FALSE(f().Option[4].Value);
    EXPECT_EQ(f().lblUsoA.Caption, "7.050");
    EXPECT_EQ(f().lblUsoB.Caption, "7.050");
    EXPECT_EQ(f().Timer1.Interval, 5); // 3 away: fast
    EXPECT_EQ(f().Timer3.Interval, 5);
    clock.advance(160); // B needs 30 steps
    EXPECT_FALSE(f().Timer3.Enabled);
    EXPECT_FALSE(f().cmdOff.Enabled);
    clock.advance(150);
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_TRUE(f().cmdOff.Enabled);
    EXPECT_NEAR(f().sngPosA, 3, 0.0501);
    EXPECT_NEAR(f().sngPosB, 0.5, 0.0501);
    EXPECT_FALSE(f().bolMemA || f().bolMemB);
}

TEST_F(MemoryTest, ARecallOfWhereItStandsStartsNothingButChoosesASpeed) {
    storeMemory(2, 12.35F, 5, "14.020");
    f().sngPosA = 12.352F;
    f().intDirA = 1;
    f().cmdAlta.Click.fire();
    f().Option[2].userClick();
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer2.Enabled || f().Timer3.Enabled || f().Timer4.Enabled);
    EXPECT_FALSE(f().bolMemA || f().bolMemB);
    EXPECT_TRUE(f().cmdOff.Enabled);
    EXPECT_EQ(f().Timer1.Interval, 10);
    EXPECT_EQ(f().lblUsoA.Caption, "14.020");
}

TEST_F(MemoryTest, ARecallIsSlowOnlyWithinTheDistance) {
    for (const auto& [position, interval] :
         {std::pair(1.01F, 5), std::pair(1.0F, 5), std::pair(0.99F, 10), std::pair(0.0F, 10)}) {
        storeMemory(1, position, position, "7.050");
        f().sngPosA = f().sngPosB = 0;
        f().intDirA = f().intDirB = form::kForward;
        f().Option[1].userClick();
        EXPECT_EQ(f().Timer1.Interval, interval) << position;
        EXPECT_EQ(f().Timer4.Interval, interval) << position;
        f().cmdAlt.Click.fire();
        f().cmdAltB.Click.fire();
    }
}

TEST_F(MemoryTest, ARecallSeesNoReversal) {
    storeMemory(1, 3, 0, "7.050");
    f().sngPosA = 5;
    f().cmdAv.Click.fire();
    clock.advance(20);
    EXPECT_EQ(f().intFaseA, 3);
    f().Option[1].userClick();
    EXPECT_TRUE(f().Timer2.Enabled);
    EXPECT_EQ(f().intFaseA, 3);
}

TEST_F(MemoryTest, BelowZeroOrNeverStoredNothingIsRecalled) {
    storeMemory(1, 3, 3, "7.050");
    f().Label2.Caption = "-0.01";
    f().Option[1].userClick();
    EXPECT_EQ(dialogs.takeMessages(), std::vector{kEndOfRun});
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(f().lblUsoA.Caption, "");
    f().Label2.Caption = "0.00";
    f().Label8.Caption = "-5.00"; // B's does not count
    f().Option[1].userClick();
    EXPECT_EQ(f().lblUsoA.Caption, "7.050");
    EXPECT_FALSE(f().Option[5].Enabled);
    f().Option[5].userClick();
    EXPECT_FALSE(f().Option[5].Value);
    EXPECT_TRUE(f().Option[1].Value);
}

TEST_F(MemoryTest, InSatelliteRotorMemoriesNeitherMoveNorChange) {
    storeMemory(1, 3, 3, "7.050");
    f().mnuSat.Click.fire();
    f().Option[1].userClick();
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled || f().Option[1].Value);
    f().lblMem[1].DblClick.fire();
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(MemoryTest, ARefusedRecallKeepsTheSelection) {
    storeMemory(1, 3, 3, "7.050");
    storeMemory(2, 4, 4, "14.020");
    f().sngPosA = f().sngPosB = 0;
    f().Option[1].userClick();
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    f().Label2.Caption = "-0.01";
    const auto expectKept = [this] {
        for (const int clicked : {1, 2}) {
            f().Option[clicked].userClick();
            EXPECT_TRUE(f().Option[1].Value) << clicked;
            EXPECT_FALSE(f().Option[2].Value) << clicked; // fast store would overwrite it
            EXPECT_EQ(f().lblUsoA.Caption, "7.050");
        }
    };
    expectKept();
    f().Label2.Caption = "0.00";
    f().sngMMGiroB = 0; // one engine that cannot go keeps the other where it is
    expectKept();
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled);
    EXPECT_EQ(f().notice.Caption, "Engine 2 does not start: enter its mm/r");
}

TEST_F(MemoryTest, AFailedWriteLeavesTheMemoryAsItWas) {
    storeMemory(1, 3, 3, "7.050");
    storage.failAt(0, simulated::Storage::Fault::Error);
    storeMemory(1, 55, 55, "21.010");
    EXPECT_EQ(f().strMemPosA(1), "003.00");
    EXPECT_EQ(f().Option[1].ToolTip, "7.050 (003.00-003.00)");
}

class RecallTest : public MemoryTest {
  protected:
    void SetUp() override {
        startTuner();
        storeMemory(1, 3, 3, "7.050");
        storeMemory(2, 1, 1, "14.020");
        storeMemory(3, 2, 2, "21.010");
        connectN1mm();
        f().chkAutoMemOnOff.userClick();
    }
    int selected() {
        for (int n = 1; n <= 10; ++n) {
            if (f().Option[n].Value) return n;
        }
        return 0;
    }
    void settleOn(long tensOfHertz) {
        tune(tensOfHertz);
        poll();
        poll();
    }
};

TEST_F(RecallTest, RecallsOnceTheFrequencyHasSettled) {
    poll(); // nothing heard yet
    EXPECT_EQ(f().strFreqPrev, "");
    tune(1402500);
    poll();
    EXPECT_FALSE(f().lblBandCh.Visible); // nothing was known before
    EXPECT_EQ(selected(), 2);            // and so nothing has changed
    EXPECT_EQ(f().lblUsoA.Caption, "14.020");
    EXPECT_TRUE(f().Timer2.Enabled);

    tune(2130000);
    poll();
    EXPECT_TRUE(f().lblBandCh.Visible);
    EXPECT_EQ(selected(), 2);
    poll();
    EXPECT_EQ(selected(), 3);
    clock.advance(2500);
    EXPECT_FALSE(f().lblBandCh.Visible);
    EXPECT_FALSE(f().tmrBandCh.Enabled);
}

TEST_F(RecallTest, AMemoryInUseIsNotDrivenAnew) {
    f().sngPosA = f().sngPosB = 200;
    settleOn(1402500);
    EXPECT_EQ(f().Timer2.Interval, 5);
    f().cmdBassa.Click.fire(); // a choice that a second recall would undo
    clock.advance(2000);
    EXPECT_TRUE(f().Timer2.Enabled);
    EXPECT_EQ(f().Timer2.Interval, 10);
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    clock.advance(2000);
    EXPECT_FALSE(f().Timer2.Enabled || f().Timer3.Enabled);
    f().lblUsoB.Caption = "Manual"; // in use is what both engines show
    poll();
    EXPECT_TRUE(f().Timer2.Enabled && f().Timer3.Enabled);
    EXPECT_EQ(f().lblUsoB.Caption, "14.020");
    f().mnuAmpli.Click.fire();
    EXPECT_EQ(f().lblUsoA.Caption.get() + f().lblUsoB.Caption.get(), "");
    poll(); // the positions are 0 now
    EXPECT_EQ(f().lblUsoA.Caption, "14.020");
    EXPECT_TRUE(f().Timer1.Enabled && f().Timer4.Enabled);
}

TEST_F(RecallTest, AnEngineThatCannotStartEndsAutoInsteadOfTryingAtEachTick) {
    f().intStepsB = 0;
    settleOn(1402500);
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked());
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer2.Enabled);
    EXPECT_EQ(f().notice.Caption, "Engine 2 does not start: enter its steps/r");
    EXPECT_EQ(f().lblUsoA.Caption, "");
}

TEST_F(RecallTest, KeysInBothModes) {
    storeMemory(4, 4, 4, "40m");
    storeMemory(5, 5, 5, "160");
    storeMemory(6, 6, 6, "20");
    const std::tuple<long, bool, int> cases[] = {{702500, false, 1},  {710000, false, 1}, {702500, true, 4},
                                                 {183000, true, 5},   {1402500, true, 6}, {1402500, false, 2},
                                                 {5012500, false, 0}, {183000, false, 0}};
    for (const auto& [frequency, bandMode, memory] : cases) {
        f().chkBandMode.Value = bandMode ? 1 : 0;
        for (int n = 1; n <= 10; ++n)
            f().Option[n].Value.load(false);
        f().lblUsoA.Caption = "";
        settleOn(frequency);
        EXPECT_EQ(selected(), memory) << frequency << bandMode;
    }
    EXPECT_EQ(f().strFreqKey, "1.");
}

TEST_F(RecallTest, TwelveBandsHaveANameAndOthersKeepTheirMegahertz) {
    f().chkBandMode.Value = 1;
    const std::pair<long, const char*> bands[] = {
        {2970000, "10"}, {2800000, "10"}, {2718500, "11"}, {2489000, "12"}, {2145000, "15"},
        {1806800, "17"}, {1400000, "20"}, {1010000, "30"}, {719950, "40"},  {535150, "60"},
        {350000, "80"},  {181000, "16"},  {5031300, "50"}, {413000, "4."},  {990000, "9."}};
    for (const auto& [frequency, name] : bands) {
        settleOn(frequency);
        EXPECT_EQ(f().strFreqKey, name) << frequency;
    }
}

TEST_F(RecallTest, ATickWithoutFrequencyChangesNothing) {
    settleOn(1402500);
    f().StatusBar1.Panels(2) = "a message";
    tune(0);
    poll();
    EXPECT_EQ(f().StatusBar1.Panels(2), "");
    EXPECT_EQ(f().strFreqPrev, "14025");
    EXPECT_EQ(f().strFreqKey, "14");
    EXPECT_FALSE(f().lblBandCh.Visible);
}

TEST_F(RecallTest, AnyProgramsTextThatStandsCountsAsSettled) {
    settleOn(1402500);
    f().lblLog32DataM.Caption = "14025";
    tune(2130000);
    poll();
    EXPECT_FALSE(f().bolFreqChanged);
    EXPECT_EQ(selected(), 3);
}

TEST_F(RecallTest, MemoriesWithoutLabelOrPositionAreNeverFound) {
    f().cmdAutoMemConn.Click.fire();
    storeMemory(7, 7, 7, "");
    f().lblFr[8].Caption = "0.5"; // a label, but nothing stored
    f().lblUsoA.Caption = "x";
    f().intConnProgrTuner = form::kHamRadioDeluxe;
    f().chkAutoMemOnOff.Value = 1;
    poll();
    poll();
    EXPECT_EQ(selected(), 0);
}

TEST_F(RecallTest, WaitsWhileABoxIsOpenAndAsksOnlyOnceBelowZero) {
    settleOn(1402500);
    tune(2130000);
    poll();
    dialogs.whileOpen = [this] { clock.advance(2000); };
    f().chkHalfStepB.userClick();
    EXPECT_EQ(selected(), 2);
    dialogs.whileOpen = nullptr;
    dialogs.takeMessages();
    f().Label2.Caption = "-0.01";
    clock.advance(3000);
    EXPECT_EQ(dialogs.takeMessages(), std::vector{kEndOfRun});
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked());
    f().chkAutoMemOnOff.userClick();
    EXPECT_EQ(dialogs.takeMessages(), std::vector{kEndOfRun});
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked());
    EXPECT_EQ(f().lblAutoMemOnOff.Caption, "Manual");
}

TEST_F(RecallTest, OnlyTheUsersUntickEndsFastStore) {
    f().chkFastMemory.Value = 1;
    f().chkAutoMemOnOff.Value = 0;
    EXPECT_TRUE(f().chkFastMemory.ticked());
    f().chkAutoMemOnOff.Value = 1;
    f().chkAutoMemOnOff.userClick();
    EXPECT_FALSE(f().chkFastMemory.ticked());
}

TEST_F(RecallTest, AlarmsSoundOnABandChange) {
    settleOn(1402500);
    settleOn(2130000);
    EXPECT_TRUE(sound.played.empty());
    f().bolAllarmi = true;
    settleOn(1402500);
    EXPECT_EQ(sound.played, std::vector<std::string>{"torvo.wav"});
}

TEST_F(RecallTest, SlowDistanceIsKeptAtEachChange) {
    f().HScrMemSpeedCh.userScroll(5);
    EXPECT_EQ(f().lblMemSpeedCh.Caption, "5");
    EXPECT_EQ(f().intMemSlowDist, 5);
    EXPECT_EQ(file.read().integer(56), 5);
}

} // namespace
