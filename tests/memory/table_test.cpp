#include "form/table_window.h"
#include "tests/desk.h"

namespace {

/// A tuner that N1MM Logger tells the frequency, 0.05 mm a step.
class TableTest : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        connectN1mm();
        controller->boxes().windowBeside = [this](form::Form& shown) {
            window_ = dynamic_cast<form::FrmHiResMem*>(&shown);
        };
        f().mnuFileMemHR.Click.fire();
    }
    form::FrmHiResMem& window() { return *window_; }
    std::filesystem::path tableFile() const { return folder.path() / "HiResMem.txt"; }
    /// Stands at a frequency and a place, and presses Insert there.
    void add(long tensOfHertz, float a, float b) {
        tune(tensOfHertz);
        poll();
        f().sngPosA = a;
        f().sngPosB = b;
        f().onAddPosition();
    }
    void follow() {
        f().chkHRM.userClick();
        f().chkAutoMemOnOff.userClick();
    }
    /// The radio goes there, and the engines have time.
    void settle(long tensOfHertz) {
        tune(tensOfHertz);
        clock.advance(20'000);
    }
    static constexpr double kStep = 0.0505; // user units, and what rounding adds
    void expectAt(double a, double b) {
        EXPECT_NEAR(f().sngPosA, a, kStep);
        EXPECT_NEAR(f().sngPosB, b, kStep);
    }

  private:
    form::FrmHiResMem* window_ = nullptr;
};

TEST_F(TableTest, FollowsTheFrequencyBetweenItsEntries) {
    add(700000, 10, 90);
    add(710000, 20, 80);
    add(1400000, 40, 60);
    window().grid.Edited.fire(1, form::TableGrid::kEndOfStretch, "1");
    storeMemory(1, 50, 50, "21.010");
    f().Option[1].userClick();
    EXPECT_TRUE(f().Option[1].Value);
    follow();
    settle(702550); // 7.0255 is not 7.02
    expectAt(12.55, 87.45);
    EXPECT_EQ(f().lblUsoA.Caption, "7.0255");
    EXPECT_FALSE(f().Option[1].Value);
    settle(709000);
    expectAt(19, 81);
    tune(1000000); // outside all stretches
    clock.advance(2000);
    expectAt(19, 81);
    EXPECT_NE(f().notice.Caption.get().find("the nearest is 7.1, 2900 kHz away"), std::string::npos)
        << f().notice.Caption.get();
    tune(710035);
    clock.advance(2000);
    EXPECT_NE(f().notice.Caption.get().find("the nearest is 7.1, 350 Hz away"), std::string::npos)
        << f().notice.Caption.get();
    settle(1400000);
    expectAt(40, 60);
    // Not driven anew while nothing changes, nor for less than a step.
    f().sngPosA = 41;
    clock.advance(5000);
    EXPECT_EQ(f().sngPosA, 41);
    settle(1400001);
    EXPECT_EQ(f().sngPosA, 41);
}

TEST_F(TableTest, WaitsWhileTheRadioTransmits) {
    add(700000, 10, 90);
    add(710000, 20, 80);
    follow();
    udp.send(12060, "<TXFreq>705000</TXFreq><IsTransmitting>True</IsTransmitting>");
    clock.advance(3000);
    expectAt(20, 80);
    EXPECT_EQ(f().notice.Caption, "Waits: transmitting");
    udp.send(12060, "<TXFreq>705000</TXFreq><IsTransmitting>False</IsTransmitting>");
    clock.advance(20'000);
    expectAt(15, 85);
    f().tuner.waitWhileTransmitting = false;
    udp.send(12060, "<TXFreq>706000</TXFreq><IsTransmitting>True</IsTransmitting>");
    clock.advance(20'000);
    expectAt(16, 84);
}

TEST_F(TableTest, ReachesPositionsFromBelowWhereThereIsBacklash) {
    add(700000, 10, 90);
    add(710000, 20, 80);
    inDialog<form::FrmGenSet>([](form::FrmGenSet& dialog) {
        dialog.txtCW1.Text = "a";
        dialog.txtCCW1.Text = "b";
        dialog.txtCW2.Text = "c";
        dialog.txtCCW2.Text = "d";
        dialog.txtBacklash1.Text = "20";
        dialog.txtBacklash1.Change.fire();
        EXPECT_EQ(dialog.lblBacklash1.Caption, "= 1.00 mm");
        dialog.cmdSalvaGenSet.Click.fire();
    });
    f().mnuGenSet.Click.fire();
    EXPECT_EQ(settings.read("engine-1").at("backlash"), "20");
    follow();
    tune(705000);
    float lowest = 99;
    for (int i = 0; i < 20'000; i += 10) {
        clock.advance(10);
        lowest = std::min(lowest, f().sngPosA);
    }
    expectAt(15, 85);
    EXPECT_NEAR(lowest, 14, kStep);
    // Moved down by hand, engine 1 is not where it seems. At a start nothing is known of its play.
    f().cmdIndMan.MouseDown.fire();
    clock.advance(100);
    f().cmdIndMan.MouseUp.fire();
    tune(705000);
    poll();
    f().onAddPosition();
    EXPECT_NE(window().lblTableNotice.Caption.get().find("last moved down"), std::string::npos);
    SetUp();
    add(705000, 15, 85);
    EXPECT_EQ(window().lblTableNotice.Caption, "Not added: the backlash of Engine 1 may not be taken up: "
                                               "come to its place from further below");
    EXPECT_EQ(f().hiResMem.size(), 2U);
}

TEST_F(TableTest, KeepsEachChangeOnDiskWithAllDigits) {
    add(1402551, 12.35F, 101);
    EXPECT_EQ(storage.bytesOf(tableFile()), "# MHz\tA\tB\tend of stretch\n14.02551\t12.35\t101\t0\n");
    auto records = file.read();
    EXPECT_EQ(records.integer(99), 1);
    EXPECT_EQ(records.text(100), " 14.02");
    // Without an orderly end.
    startTuner();
    ASSERT_EQ(f().hiResMem.size(), 1U);
    EXPECT_EQ(f().hiResMem[0], (form::TableEntry{14.02551, 12.35, 101, false}));
    // Another tool has written the record: it counts.
    controller.reset();
    file.write({config::textRecord(101, " 13")});
    start();
    EXPECT_EQ(f().hiResMem[0].posA, 13);
    EXPECT_NEAR(f().hiResMem[0].megahertz, 14.02, 1e-9);
    // A fourth column that means nothing here is left alone.
    controller.reset();
    file.write({config::textRecord(103, " 2")});
    start();
    f().mnuUscita.Click.fire();
    EXPECT_EQ(file.read().text(103), " 2");
}

TEST_F(TableTest, OneBadEntryCostsNoOtherItsDigits) {
    add(1402551, 12.35F, 101);
    add(2102551, 12.35F, 101);
    // Another program has put what this one would not; the next change writes it to the file too.
    file.write({config::textRecord(101, " 1200")});
    start();
    SetUp();
    add(700000, 1, 1);
    SetUp();
    ASSERT_EQ(f().hiResMem.size(), 3U);
    EXPECT_EQ(f().hiResMem[1], (form::TableEntry{14.02, 1200, 101}));
    EXPECT_EQ(f().hiResMem[2].megahertz, 21.02551);
    EXPECT_EQ(f().notice.Caption, "");
    storage.put(tableFile(), "7\t1\t1\nseven\n21.02551\t12.35\t101\n");
    SetUp();
    EXPECT_EQ(f().hiResMem[2].megahertz, 21.02551);
    EXPECT_EQ(f().notice.Caption, "Not used of HiResMem.txt: Line 2: has 1 columns instead of 3 or 4");
}

TEST_F(TableTest, EntriesThatCoincideInSixCharactersStay) {
    add(1402551, 12, 101);
    add(1402559, 13, 102);
    storage.remove(tableFile());
    SetUp();
    ASSERT_EQ(f().hiResMem.size(), 2U);
    window().grid.Pasted.fire("7\t1\t2\n");
    window().grid.Edited.fire(2, form::TableGrid::kPositionA, "14");
    SetUp();
    EXPECT_EQ(f().hiResMem, (form::FrequencyTable{{7, 1, 2}, {14.02, 12, 101}, {14.02, 14, 102}}));
    window().grid.Edited.fire(2, form::TableGrid::kFrequency, "14.02559"); // the digits come back by hand
    EXPECT_EQ(f().hiResMem[2].megahertz, 14.02559);
}

TEST_F(TableTest, TheTickIsRememberedAndRecallsAnew) {
    add(700000, 10, 90);
    follow();
    settle(700000);
    f().sngPosA = 30;
    f().chkHRM.userClick();
    f().chkHRM.userClick();
    settle(700000);
    expectAt(10, 90);
    startTuner();
    EXPECT_TRUE(f().chkHRM.ticked());
}

TEST_F(TableTest, AChangeThatCannotBeKeptIsNotMade) {
    add(700000, 10, 90);
    storage.failAt(0, simulated::Storage::Fault::Error);
    add(710000, 20, 80);
    EXPECT_EQ(f().hiResMem.size(), 1U);
    EXPECT_NE(window().lblTableNotice.Caption.get().find("Not stored"), std::string::npos);
    storage.restart();
    add(710000, 20, 80);
    EXPECT_EQ(f().hiResMem.size(), 2U);
}

TEST_F(TableTest, ChangesAreTakenBackAndMadeAgain) {
    add(700000, 10, 90);
    clock.advance(9000); // tuned for a while: N1MM Logger repeats what has not changed every 10 s
    f().sngPosA = 11;
    f().onAddPosition(); // replaces
    EXPECT_EQ(f().hiResMem.size(), 1U);
    window().cmdTableReset.Click.fire();
    EXPECT_EQ(file.read().integer(99), 0);
    EXPECT_TRUE(f().hiResMem.empty());
    window().cmdTableUndo.Click.fire();
    EXPECT_EQ(f().hiResMem.at(0).posA, 11);
    window().cmdTableUndo.Click.fire();
    EXPECT_EQ(f().hiResMem.at(0).posA, 10);
    window().cmdTableRedo.Click.fire();
    EXPECT_EQ(f().hiResMem.at(0).posA, 11);
    EXPECT_EQ(file.read().text(101), " 11");
}

TEST_F(TableTest, RefusesWithTheReason) {
    struct Case {
        std::function<void()> prepare;
        const char* reason;
    };
    const Case cases[] = {{[this] { tune(0), poll(); }, "no frequency is known"},
                          {[this] { tune(700000), clock.advance(14'000); }, "older than 3 s"},
                          {[this] { tune(700000), poll(), f().cmdAv.Click.fire(); }, "an engine runs"},
                          {[this] { f().cmdAlt.Click.fire(), f().mnuSat.Click.fire(); }, "tuner functions"}};
    for (const Case& each : cases) {
        each.prepare();
        f().onAddPosition();
        EXPECT_NE(window().lblTableNotice.Caption.get().find(each.reason), std::string::npos)
            << window().lblTableNotice.Caption.get();
    }
    const std::pair<int, const char*> entries[] = {{form::TableGrid::kFrequency, "seven"},
                                                   {form::TableGrid::kFrequency, "-7"},
                                                   {form::TableGrid::kPositionA, "1"}};
    for (const auto& [column, text] : entries)
        window().grid.Edited.fire(0, column, text);
    EXPECT_TRUE(f().hiResMem.empty());
    f().mnuCoilTuner.Click.fire();
    window().grid.Edited.fire(0, form::TableGrid::kFrequency, "7");
    for (const auto& [text, reason] : {std::pair("7 1 1\n8 x 1\n", "Line 2: \"x\" is not a number"),
                                       {"# a comment\n\n", "the file has no entries"}}) {
        storage.put(folder.path() / "loop.txt", text);
        dialogs.fileAnswers = {(folder.path() / "loop.txt").string()};
        window().cmdTableImport.Click.fire();
        EXPECT_EQ(window().lblTableNotice.Caption, std::string("Not imported: ") + reason);
        EXPECT_EQ(f().hiResMem.size(), 1U);
    }
}

TEST_F(TableTest, TravelsWithAConfiguration) {
    add(1402551, 12.35F, 101);
    const std::string loop = (folder.path() / "loop.cfg").string();
    dialogs.textAnswers = {"loop"};
    dialogs.fileAnswers = {loop};
    f().mnuSaveConfig.Click.fire();
    window().cmdTableReset.Click.fire();
    dialogs.fileAnswers = {loop};
    f().mnuLoadConfig.Click.fire();
    ASSERT_EQ(f().hiResMem.size(), 1U);
    EXPECT_EQ(f().hiResMem[0].megahertz, 14.02551);
    EXPECT_FALSE(window().cmdTableUndo.Enabled);
}

TEST_F(TableTest, JogsByLettersAndLeavesWhatIsTunedAlone) {
    f().strCW1 = "a";
    f().strCCW1 = "s";
    f().strCW2 = "x";
    f().strCCW2 = "x";
    add(700000, 10, 90);
    add(710000, 20, 80);
    follow();
    tune(705000);
    clock.advance(20'000);
    f().onLetterDown('A', true); // fast: 200 steps/s
    EXPECT_EQ(f().Timer1.Interval, 5);
    EXPECT_EQ(f().lblUsoA.Caption, "Manual");
    EXPECT_EQ(f().lblAutoMemOnOff.Caption, "Semi Auto");
    f().onLetterDown('S', false); // both letters of an engine: it stands until both are up
    EXPECT_TRUE(f().cmdOff.Enabled);
    f().onLetterUp('A');
    EXPECT_TRUE(f().cmdOff.Enabled);
    f().onLetterUp('S');
    f().onLetterDown('S', false);
    EXPECT_EQ(f().Timer2.Interval, 10);
    clock.advance(100);
    f().onKeyboardLost();
    EXPECT_TRUE(f().cmdOff.Enabled);
    settle(705080); // the way counts from the latest press
    f().onLetterDown('S', false);
    clock.advance(50);
    f().onLetterUp('S');
    const float tuned = f().sngPosA;
    settle(705180); // a kilohertz on: not driven back under the finger
    EXPECT_EQ(f().sngPosA, tuned);
    settle(705181);
    EXPECT_EQ(f().lblAutoMemOnOff.Caption, "Auto");
    expectAt(15.181, 84.819);
    f().onLetterDown('X', false); // bound twice
    EXPECT_TRUE(f().cmdOff.Enabled);
    EXPECT_NE(f().notice.Caption.get().find("more than one move"), std::string::npos);
}

TEST_F(TableTest, ExactRecallsTheNearestMemory) {
    storeMemory(1, 5, 5, "14.020");
    storeMemory(2, 6, 6, "14.030");
    f().chkBandMode.userClick();
    f().chkExact.userClick();
    EXPECT_FALSE(f().chkBandMode.ticked());
    EXPECT_EQ(settings.read("recall").at("exact"), "yes");
    f().chkAutoMemOnOff.userClick();
    settle(1402700);
    expectAt(6, 6);
    settle(1402300);
    expectAt(5, 5);
    settle(1404000); // more than 5 kHz away from each
    expectAt(5, 5);
    EXPECT_TRUE(f().Option[1].Value);
}

TEST_F(TableTest, ExactReadsAllTenCharactersOfALabel) {
    storeMemory(1, 5, 5, "14.0205");
    storeMemory(2, 6, 6, "14.0209");
    storeMemory(3, 7, 7, "14,0300 CW");
    f().tuner.exactKilohertz = 1;
    f().chkExact.userClick();
    f().chkAutoMemOnOff.userClick();
    const std::pair<long, int> cases[] = {
        {1402090, 2}, {1402050, 1}, {1402082, 2}, {1403000, 3}, {1402055, 1}};
    for (const auto& [tensOfHertz, memory] : cases) {
        settle(tensOfHertz);
        EXPECT_TRUE(f().Option[memory].Value) << tensOfHertz;
        expectAt(memory + 4, memory + 4);
    }
    f().sngPosA = 4; // what is in use is not driven again
    settle(1402056);
    EXPECT_EQ(f().sngPosA, 4);
}

TEST_F(TableTest, ALoadedBandModeSwitchesExactOff) {
    f().chkExact.userClick();
    controller.reset();
    file.write({config::integerRecord(config::record::kBandMode, -1)});
    start();
    EXPECT_TRUE(f().chkBandMode.ticked());
    EXPECT_FALSE(f().chkExact.ticked() || f().tuner.exact);
}

} // namespace
