#include "tests/desk.h"

namespace {

class LifeCycleTest : public Desk {};

TEST_F(LifeCycleTest, AnEmptyFolderStartsWithoutABoxAndWritesNothing) {
    start();
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_EQ(bytesOf(file.path()), "");
    EXPECT_TRUE(storage.exists(file.path()));
    EXPECT_EQ(port.data(), 255);
    EXPECT_EQ(f().StatusBar1.Panels(1), "Choose a function");
    EXPECT_EQ(f().StatusBar1.Panels(6), "simulated");
    EXPECT_TRUE(f().framTuner.Visible);
    EXPECT_FALSE(f().framSat.Visible);
    EXPECT_EQ(f().intFaseA, 1);
    EXPECT_EQ(f().intFaseHalfA, 0);
    EXPECT_EQ(f().bytMoltB, 1);
    EXPECT_EQ(f().Label2.ForeColor, form::kDefaultDisplay);
    EXPECT_EQ(f().hScrCmdOff.Value, 1);
    f().cmdAv.Click.fire();
    clock.advance(60000); // no speed, no steps, no error
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_EQ(bytesOf(file.path()), "");
}

/// A file that uses every record that the start reads.
std::vector<config::Record> fullFile() {
    using namespace config;
    std::vector<Record> records;
    for (int n = 1; n <= 10; ++n) {
        records.push_back(textRecord(n, "0" + std::to_string(10 + n) + ".50"));
        records.push_back(textRecord(70 + n, "1" + std::to_string(10 + n) + ".25"));
        records.push_back(textRecord(20 + n, "label " + std::to_string(n)));
    }
    const std::vector<Record> rest = {integerRecord(11, 200),   singleRecord(12, 10),
                                      integerRecord(13, 400),   integerRecord(14, 100),
                                      integerRecord(15, 500),   integerRecord(16, 50),
                                      integerRecord(17, 48),    singleRecord(18, 2.5F),
                                      integerRecord(31, 2),     integerRecord(32, 12),
                                      integerRecord(33, 13),    integerRecord(34, 14),
                                      integerRecord(35, 15),    integerRecord(36, 1),
                                      integerRecord(37, 2),     integerRecord(38, 3),
                                      integerRecord(39, 16),    integerRecord(40, 17),
                                      booleanRecord(41, true),  integerRecord(42, 8),
                                      byteRecord(43, 2),        byteRecord(44, 1),
                                      integerRecord(45, 6969),  singleRecord(46, 12.35F),
                                      singleRecord(47, -3),     singleRecord(48, 180),
                                      singleRecord(49, 45),     booleanRecord(50, true),
                                      booleanRecord(51, true),  textRecord(52, "&HFF00"),
                                      textRecord(53, "&H10"),   textRecord(54, "7.050"),
                                      textRecord(55, "Manual"), integerRecord(56, 5),
                                      textRecord(57, "a"),      textRecord(58, "b"),
                                      textRecord(59, "c"),      textRecord(60, "d"),
                                      booleanRecord(61, true),  taggedTextRecord(62, "Home"),
                                      booleanRecord(63, true),  integerRecord(64, 3),
                                      integerRecord(65, 12061), integerRecord(66, 150),
                                      integerRecord(67, -25),   integerRecord(81, 2),
                                      integerRecord(99, 2)};
    records.insert(records.end(), rest.begin(), rest.end());
    for (int i = 0; i < 8; ++i)
        records.push_back(textRecord(100 + i, " " + std::to_string(i) + ".25"));
    return records;
}

TEST_F(LifeCycleTest, EverySettingIsLoadedAndNothingWritten) {
    file.write(fullFile());
    const std::string before = bytesOf(file.path());
    start();
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_EQ(f().intFunzione, form::kTuneAndLoad);
    EXPECT_EQ(f().Label2.Caption, "12.35");
    EXPECT_EQ(f().Label8.Caption, "-3.00");
    EXPECT_EQ(f().sngPosAz, 180);
    EXPECT_EQ(f().lblUsoA.Caption, "7.050");
    EXPECT_EQ(f().lblUsoB.Caption, "Manual");
    EXPECT_EQ(f().Timer1.Interval, 10);
    EXPECT_EQ(f().Timer3.Interval, 20);
    EXPECT_EQ(f().txtMMGiroB.Text, "2.5");
    EXPECT_TRUE(f().chkHalfStep.ticked() && f().bolHalfStepA);
    EXPECT_EQ(f().chkHalfStep.Caption, "Half Step");
    EXPECT_EQ(f().chkHalfStepB.Caption, "Full Step");
    EXPECT_EQ(f().lblFr[10].Caption, "label ");
    EXPECT_EQ(f().Option[10].ToolTip, "label 10 (020.50-120.25)");
    EXPECT_EQ(f().lblHiSpOnAz.Caption, "12");
    EXPECT_EQ(f().HScroll5.Value, 15);
    EXPECT_EQ(f().lblAccCurve.Caption, "17");
    EXPECT_EQ(f().lblOffsetA.Caption, "1.50");
    EXPECT_EQ(f().lblOffsetB.Caption, "-0.25");
    EXPECT_TRUE(f().chkAutoCmdOff.ticked());
    EXPECT_EQ(f().tmrAutoOff.Interval, 8000);
    EXPECT_EQ(f().lblMemSpeedCh.Caption, "5");
    EXPECT_EQ(f().lblBandMode.Caption, "Band Mode");
    EXPECT_EQ(f().StatusBar1.Panels(5), "Home");
    EXPECT_EQ(f().StatusBar1.Panels(3), "N1MM Logger");
    EXPECT_EQ(f().Label2.ForeColor, 0xFF00U);
    EXPECT_EQ(f().shpDisplayB.FillColor, 0x10U);
    EXPECT_EQ(f().strCW2, "d");
    const std::pair<std::string, std::string> loaded[] = {
        {f().txtSteps.Text, "200"},
        {f().txtStepsB.Text, "48"},
        {f().txtMMGiro.Text, "10"},
        {f().txtAltaVelA.Text, "400"},
        {f().txtBassaVelA.Text, "100"},
        {f().txtAltaVelB.Text, "500"},
        {f().txtBassaVelB.Text, "50"},
        {f().lblHiSpOnEL.Caption, "13"},
        {f().lblAutoRStAz.Caption, "14"},
        {f().lblAutoRStEl.Caption, "15"},
        {f().lblAntiRipEl.Caption, "16"},
        {f().lblAutoCmdOff.Caption, "8"},
        {f().lblAzimut.Caption, "180.00"},
        {f().lblElev.Caption, "45.00"},
        {f().strCCW1 + f().strCW1 + f().strCCW2, "abc"},
        {f().StatusBar1.Panels(4), "6969"},
    };
    for (const auto& [text, expected] : loaded)
        EXPECT_EQ(text, expected);
    for (int n = 1; n <= 10; ++n) {
        EXPECT_EQ(f().strMemPosA(n), "0" + std::to_string(10 + n) + ".50");
        EXPECT_EQ(f().strMemPosB(n), "1" + std::to_string(10 + n) + ".25");
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(f().spareSettings.at(static_cast<std::size_t>(i)), i + 1);
    EXPECT_TRUE(f().bolAllarmi);
    EXPECT_EQ(f().intPortaN1MM, 12061);
    EXPECT_EQ(f().intSatSource, 2);
    EXPECT_EQ(f().intMemSlowDist, 5);
    ASSERT_EQ(f().hiResMem.size(), 2U);
    EXPECT_EQ(f().hiResMem[0], (form::TableEntry{0.25, 1.25, 2.25, 3.25}));
    EXPECT_EQ(f().hiResMem[1], (form::TableEntry{4.25, 5.25, 6.25, 7.25}));
    EXPECT_FALSE(f().bolCaricaInAvvio);
}

TEST_F(LifeCycleTest, WithoutRecord51PositionsStartAtZeroAndBandModeKnowsTwoValues) {
    file.write(fullFile());
    file.write({config::integerRecord(51, 1), config::integerRecord(61, 1)});
    start();
    EXPECT_EQ(f().sngPosA, 0);
    EXPECT_EQ(f().Label2.Caption, "0");
    EXPECT_EQ(f().lblUsoA.Caption, "");
    EXPECT_FALSE(f().chkBandMode.ticked());
}

TEST_F(LifeCycleTest, ExitInMidMoveSwitchesOffSavesAndKeepsTheRest) {
    file.write(fullFile());
    start();
    connectN1mm(12061);
    f().cmdAv.Click.fire();
    clock.advance(100);
    f().HScOffsetA.userScroll(1);
    f().chkAutoCmdOff.userClick();
    int closed = 0;
    f().onUnload = [&] {
        ++closed;
        EXPECT_EQ(port.data(), 255);
        EXPECT_FALSE(f().Timer1.Enabled);
        EXPECT_FALSE(udp.listening(12061));
    };
    f().mnuUscita.Click.fire();
    controller->close();
    EXPECT_EQ(closed, 1);
    auto records = file.read();
    EXPECT_EQ(records.single(46), f().sngPosA);
    EXPECT_FALSE(records.boolean(41));
    EXPECT_EQ(records.byte(43), 2);
    EXPECT_EQ(records.text(52), "&HFF00");
    EXPECT_EQ(records.integer(66), 1);
    EXPECT_EQ(records.text(101), " 1.25");
    EXPECT_EQ(bytesOf(file.path()).size(), 107U * 12);
    f().HScrMemSpeedCh.userScroll(9); // the program has ended
    EXPECT_EQ(file.read().integer(56), 5);
}

TEST_F(LifeCycleTest, ClosingTheWindowSavesTooAndPositionsOnlyWhenWanted) {
    file.write(fullFile());
    file.write({config::booleanRecord(50, false), config::integerRecord(99, 0)});
    start();
    f().sngPosA = 1;
    f().hiResMem.assign(1, {14.2003, -123.456, 5, true});
    int closed = 0;
    f().onUnload = [&] { ++closed; };
    controller->close();
    controller->close();
    EXPECT_EQ(closed, 1);
    auto records = file.read();
    EXPECT_EQ(records.single(46), 12.35F);
    EXPECT_EQ(records.integer(99), 1);
    EXPECT_EQ(records.text(100), " 14.20");
    EXPECT_EQ(records.text(101), "-123.4");
    EXPECT_EQ(records.text(102), " 5");
    EXPECT_EQ(records.text(103), " 1");
}

TEST_F(LifeCycleTest, DamageIsToldOnceAndNothingMadeWorse) {
    file.write(fullFile());
    file.write({config::integerRecord(3, 300), config::integerRecord(42, 40), config::textRecord(104, "oops"),
                config::integerRecord(56, 101), config::integerRecord(66, 20000),
                config::integerRecord(67, -9001), config::integerRecord(40, -1)});
    storage.put(file.path(), bytesOf(file.path()) + "tail");
    const std::string before = bytesOf(file.path());
    start();
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    for (const char* part :
         {"save.cfg", "memory 3, position of engine 1", "delay of Auto Out Off", "high-resolution table",
          "ends inside", "Slow within", "AZ Offset", "EL Offset", "Acceleration curve"}) {
        EXPECT_NE(messages[0].text.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_EQ(f().intStepsB, 48);
    EXPECT_EQ(f().intMemSlowDist, 100);
    EXPECT_EQ(f().lblMemSpeedCh.Caption, "100");
    EXPECT_EQ(f().lblOffsetA.Caption.get() + f().lblOffsetB.Caption.get(), "180.00-90.00");
    EXPECT_EQ(f().lblAccCurve.Caption, "0");
    EXPECT_EQ(f().StatusBar1.Panels(5), "Home"); // the table ended, the load went on
    f().mnuUscita.Click.fire();
    EXPECT_EQ(bytesOf(file.path()).substr(98 * 12), before.substr(98 * 12));
}

TEST_F(LifeCycleTest, AFileThatCannotBeReadOrSavedIsToldAndTheProgramGoesOn) {
    storage.breakReading(file.path());
    start();
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    f().mnuCoilTuner.Click.fire();
    EXPECT_EQ(f().StatusBar1.Panels(1), "Coil Tuner");
    f().HScrMemSpeedCh.userScroll(3);
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    int closed = 0;
    f().onUnload = [&] { ++closed; };
    f().mnuUscita.Click.fire();
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_EQ(closed, 1);
}

TEST_F(LifeCycleTest, AnExitThatFailsSaysWhatIsNotSavedAndTriesAgain) {
    file.write(fullFile());
    const std::string before = bytesOf(file.path());
    for (const bool again : {false, true}) {
        start();
        dialogs.takeMessages(); // the positions of an end that was not saved are offered
        f().chkAutoCmdOff.userClick();
        f().cmdAv.Click.fire();
        clock.advance(100);
        EXPECT_NE(port.data(), 255);
        storage.failAt(0, simulated::Storage::Fault::Error);
        dialogs.okAnswers = {again};
        dialogs.whileOpen = [&] { EXPECT_EQ(port.data(), 255) << "the outputs are off before it saves"; };
        f().mnuUscita.Click.fire();
        const auto messages = dialogs.takeMessages();
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_NE(messages[0].text.find("Not saved: function; Enable Auto Out Off; "), std::string::npos)
            << messages[0].text;
        EXPECT_EQ(bytesOf(file.path()) == before, !again);
    }
    EXPECT_FALSE(file.read().boolean(41));
}

TEST_F(LifeCycleTest, WhatDoesNotFitIsLeftOutByNameAndTheRestSaved) {
    file.write(fullFile());
    start();
    f().lblUsoA.Caption = "12345678901";
    f().hiResMem.resize(201);
    f().HScOffsetA.userScroll(1);
    f().mnuUscita.Click.fire();
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].text.find("memory in use, engine 1; high-resolution table."), std::string::npos);
    EXPECT_EQ(file.read().text(54), "7.050");
    EXPECT_EQ(file.read().integer(99), 2);
    EXPECT_EQ(file.read().integer(66), 1);
}

TEST_F(LifeCycleTest, AFileThatVanishesWhileRunningComesBackWithAWord) {
    file.write(fullFile());
    start();
    storage.take(file.path());
    f().HScrMemSpeedCh.userScroll(9);
    EXPECT_EQ(file.read().integer(56), 9);
    EXPECT_EQ(file.read().integer(11), 200);
    clock.advance(500);
    EXPECT_NE(f().notice.Caption.get().find("written again"), std::string::npos);
}

TEST_F(LifeCycleTest, EachFunctionNamesEnginesUnitsAndResets) {
    startTuner();
    struct Case {
        form::Menu& menu;
        const char *panel, *engineA, *engineB, *resetA, *resetB, *unit, *perTurn;
        bool rotor;
    };
    const Case cases[] = {
        {f().mnuAmpli, "Tune & Load", "Tune", "Load", "Reset Tn", "Reset Ld", "dots:", "dots/r", false},
        {f().mnuSat, "Satellite Rotor", "Azimuth", "Elevation", "Reset Az", "Reset El", "deg:", "deg/r",
         true},
        {f().mnuCoilTuner, "Coil Tuner", "Engine 1", "Engine 2", "Reset 1", "Reset 2", "mm:", "mm/r", false}};
    for (const Case& c : cases) {
        c.menu.Click.fire();
        EXPECT_EQ(f().StatusBar1.Panels(1), c.panel);
        EXPECT_EQ(f().lblEngineA.Caption, c.engineA);
        EXPECT_EQ(f().lblEngineB.Caption, c.engineB);
        EXPECT_EQ(f().cmdResetA.Caption, c.resetA);
        EXPECT_EQ(f().cmdResetB.Caption, c.resetB);
        EXPECT_EQ(f().lblUnitA.Caption.get() + f().lblUnitB.Caption.get(), std::string(c.unit) + c.unit);
        EXPECT_EQ(f().lblMMGiro.Caption.get() + f().lblMMGiroB.Caption.get(),
                  std::string(c.perTurn) + c.perTurn);
        for (const form::Menu* menu : {&f().mnuAmpli, &f().mnuSat, &f().mnuCoilTuner})
            EXPECT_EQ(menu->Checked, menu == &c.menu) << c.panel;
        for (const form::Control* shown : std::initializer_list<const form::Control*>{
                 &f().framSat, &f().lblAzimut, &f().lblElev, &f().cmdAv, &f().cmdInd, &f().cmdAvB,
                 &f().cmdIndB, &f().lblAzRx, &f().HScOffsetA})
            EXPECT_EQ(shown->Visible, c.rotor) << c.panel << shown->name();
        for (const form::Control* shown : std::initializer_list<const form::Control*>{
                 &f().framTuner, &f().Label2, &f().Label8, &f().lblUsoA, &f().lblUsoB})
            EXPECT_EQ(shown->Visible, !c.rotor) << c.panel << shown->name();
        EXPECT_EQ(f().mnuTunConn.Enabled, !c.rotor);
        EXPECT_EQ(f().mnuSatConn.Enabled, c.rotor);
    }
}

TEST_F(LifeCycleTest, ASwitchOfFunctionStopsSwitchesOffAndClears) {
    startTuner();
    f().sngPosA = 5;
    f().mnuCoilTuner.Click.fire(); // on already
    EXPECT_EQ(f().sngPosA, 5);
    f().cmdAv.Click.fire();
    port.takeAccesses();
    f().Option[1].Value.load(true);
    f().lblUsoA.Caption = f().lblUsoB.Caption = "7.050";
    f().mnuAmpli.Click.fire();
    EXPECT_EQ(port.data(), 255);
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(f().sngPosA, 0);
    EXPECT_EQ(f().Label2.Caption, "0");
    EXPECT_EQ(f().lblUsoA.Caption.get() + f().lblUsoB.Caption.get(), ""); // no memory has led them there
    f().mnuSat.Click.fire();
    EXPECT_FALSE(f().Option[1].Value);
    f().HScroll4.userScroll(33);
    EXPECT_EQ(file.read().integer(33), 33);
    EXPECT_EQ(f().lblHiSpOnEL.Caption, "33");
}

TEST_F(LifeCycleTest, APortThatFailsAtTheStartDoesNotStopTheLoad) {
    file.write(fullFile());
    port.breakDown("/dev/parport0: gone");
    start();
    EXPECT_FALSE(dialogs.takeMessages().empty());
    EXPECT_EQ(f().StatusBar1.Panels(1), "Tune & Load");
    EXPECT_TRUE(f().bolAvvisoReset);
    EXPECT_EQ(f().lblUsoA.Caption, "7.050");
    f().mnuUscita.Click.fire();
    EXPECT_NE(dialogs.takeMessages().at(0).text.find("could NOT be switched off"), std::string::npos);
    EXPECT_EQ(file.read().text(54), "7.050");
}

TEST_F(LifeCycleTest, AnEndWhileSettingsAreOpenIsTheirCancel) {
    startTuner();
    int closed = 0;
    f().onUnload = [&] { ++closed; };
    dialogs.colourAnswers = {0x1234U};
    inDialog<form::FrmGenSet>([&](form::FrmGenSet& dialog) {
        dialog.cmbColor.ListIndex = form::FrmGenSet::kDisplay;
        dialog.cmbColor.Click.fire();
        EXPECT_EQ(f().Label2.ForeColor, 0x1234U);
        f().mnuUscita.Click.fire();
    });
    f().mnuGenSet.Click.fire();
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(file.read().text(52), "&HC8F58C");
}

TEST_F(LifeCycleTest, ADesktopWithoutBrowserAndMailStopsNoEngine) {
    startTuner();
    f().cmdAv.Click.fire();
    clock.advance(100);
    shell.whyNot = "no program for it";
    f().mnuHelp.Click.fire();
    f().mnuMail.Click.fire();
    const simulated::Dialogs::Message told{"no program for it", "Error!", true};
    EXPECT_EQ(dialogs.takeMessages(), (std::vector{told, told}));
    const float before = f().sngPosA;
    clock.advance(100);
    EXPECT_GT(f().sngPosA, before);
    EXPECT_NE(port.data(), 0xFF) << "switched off";
}

TEST_F(LifeCycleTest, HelpMailAndAboutReachTheDesktop) {
    start();
    f().mnuHelp.Click.fire();
    EXPECT_EQ(shell.pages, std::vector<std::string>{"help.html"});
    f().mnuMail.Click.fire();
    EXPECT_EQ(shell.mails.size(), 1U);
    bool seen = false;
    inDialog<form::FrmAbout>([&](form::FrmAbout& about) {
        EXPECT_TRUE(about.lblVersion.Caption.get().starts_with("Version 1."));
        about.onUnload = [&] { seen = true; };
        about.cmdOK.Click.fire();
    });
    f().mnuSplash.Click.fire();
    EXPECT_TRUE(seen);
}

} // namespace
