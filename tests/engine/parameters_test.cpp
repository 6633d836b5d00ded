#include "tests/desk.h"

namespace {

const simulated::Dialogs::Message kNoData{"Insert a valid data", "No data entry!", true};

class ParametersTest : public Desk {
  protected:
    void SetUp() override { start(); }
};

TEST_F(ParametersTest, SpeedsAreClampedEachInItsOwnWay) {
    struct Case {
        form::Label& label;
        form::TextBox& box;
        form::Int16& speed;
        form::Int16& period;
        int record;
        int forZero;
    };
    const Case cases[] = {{f().lblMemAltaA, f().txtAltaVelA, f().intVelAltaA, f().intTickAltaA, 13, 1},
                          {f().lblBassaA, f().txtBassaVelA, f().intVelBassaA, f().intTickBassaA, 14, 1},
                          {f().lblMemAltaB, f().txtAltaVelB, f().intVelAltaB, f().intTickAltaB, 15, 0},
                          {f().lblBassaB, f().txtBassaVelB, f().intVelBassaB, f().intTickBassaB, 16, 0}};
    for (const Case& c : cases) {
        const std::tuple<const char*, int, int> entries[] = {{"2500", 1000, 1},
                                                             {"3", 3, 333},
                                                             {"6", 6, 167},
                                                             {"16", 16, 62},
                                                             {"0", c.forZero, c.forZero * 1000}};
        for (const auto& [text, speed, period] : entries) {
            enter(c.label, c.box, text);
            EXPECT_EQ(c.speed, speed) << c.label.name();
            EXPECT_EQ(c.period, period) << c.label.name();
            EXPECT_EQ(c.box.Text, std::to_string(speed));
            EXPECT_EQ(file.read().integer(c.record), speed);
            EXPECT_FALSE(c.box.Enabled);
        }
    }
    // What only pasting brings: engine A's slow speed goes no lower than 1, its fast speed may.
    enter(f().lblBassaA, f().txtBassaVelA, "-5");
    EXPECT_EQ(f().intVelBassaA, 1);
    enter(f().lblMemAltaA, f().txtAltaVelA, "-5");
    EXPECT_EQ(f().intVelAltaA, -5);
}

TEST_F(ParametersTest, OnlyEngineATakesANewSlowSpeedAtOnce) {
    startTuner();
    for (form::Button* run : {&f().cmdAv, &f().cmdAvB})
        run->Click.fire();
    enter(f().lblBassaA, f().txtBassaVelA, "50");
    enter(f().lblBassaB, f().txtBassaVelB, "50");
    EXPECT_EQ(f().Timer1.Interval, 20);
    EXPECT_EQ(f().Timer4.Interval, 10);
    f().cmdBassaB.Click.fire();
    EXPECT_EQ(f().Timer4.Interval, 20);
}

TEST_F(ParametersTest, AReasonDoesNotOutliveItsFunction) {
    f().mnuCoilTuner.Click.fire();
    enter(f().lblMMGiro, f().txtMMGiro, "x");
    EXPECT_EQ(f().entryNoticeA.Caption, "mm/r: enter a number");
    f().mnuSat.Click.fire();
    EXPECT_EQ(f().entryNoticeA.Caption, "");
}

TEST_F(ParametersTest, ARefusedCharacterIsToldUntilItsEntryIsOver) {
    f().mnuCoilTuner.Click.fire();
    f().lblMMGiroB.DblClick.fire();
    for (int character : {'1', '0', '.', '5'})
        f().txtMMGiroB.KeyPress.fire(character);
    EXPECT_EQ(f().entryNoticeB.Caption, "mm/r: whole numbers only here");
    clock.advance(form::Notice::kMilliseconds + 1);
    EXPECT_EQ(f().entryNoticeB.Caption, "mm/r: whole numbers only here");
    f().txtMMGiroB.Text.load("105");
    f().lblMMGiroB.DblClick.fire();
    EXPECT_EQ(f().entryNoticeB.Caption, "mm/r: 105, whole numbers only here");
    clock.advance(form::Notice::kMilliseconds + 1);
    EXPECT_EQ(f().entryNoticeB.Caption, "");
}

TEST_F(ParametersTest, WhatIsNoValueIsRefusedAndTheEntryStaysOpen) {
    const std::tuple<form::Label*, form::TextBox*, form::Label*, const char*> cases[] = {
        {&f().lblMemAltaA, &f().txtAltaVelA, &f().entryNoticeA, "fast: enter 1 to 1000"},
        {&f().lblBassaB, &f().txtBassaVelB, &f().entryNoticeB, "slow: enter 1 to 1000"},
        {&f().lblMemSteps, &f().txtSteps, &f().entryNoticeA, "steps/r: enter at most 32767"},
        {&f().lblMMGiro, &f().txtMMGiro, &f().entryNoticeA, "units/r: enter a number"},
        {&f().lblMMGiroB, &f().txtMMGiroB, &f().entryNoticeB, "units/r: enter a number"}};
    for (const auto& [label, box, notice, reason] : cases) {
        enter(*label, *box, "3");
        const std::string before = bytesOf(file.path());
        label->DblClick.fire();
        for (const char* text : {"", " "}) {
            box->Text.load(text);
            label->DblClick.fire();
            EXPECT_EQ(dialogs.takeMessages(), std::vector{kNoData});
            EXPECT_TRUE(box->Enabled);
            EXPECT_EQ(notice->Caption, "");
        }
        for (const char* text : {"  ", "abc", "1/2", "1e99"}) {
            box->Text.load(text);
            label->DblClick.fire();
            EXPECT_TRUE(box->Enabled) << text;
            EXPECT_EQ(notice->Caption, reason) << text;
            EXPECT_EQ(box->Text, text);
        }
        EXPECT_EQ(bytesOf(file.path()), before);
        box->Text.load("3");
        label->DblClick.fire();
        EXPECT_FALSE(box->Enabled);
        EXPECT_EQ(notice->Caption, "");
    }
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(ParametersTest, WhatCannotBeWrittenStaysOpenAndIsNotInForce) {
    startTuner();
    f().cmdAv.Click.fire();
    for (const auto& [label, box] :
         {std::pair(&f().lblBassaA, &f().txtBassaVelA), std::pair(&f().lblMMGiro, &f().txtMMGiro)}) {
        storage.failAt(0, simulated::Storage::Fault::Error);
        enter(*label, *box, "50");
        EXPECT_TRUE(box->Enabled);
        EXPECT_NE(f().entryNoticeA.Caption.get().find("save.cfg"), std::string::npos);
        EXPECT_EQ(f().entryNoticeA.ToolTip, f().entryNoticeA.Caption);
    }
    EXPECT_EQ(f().intVelBassaA, 100);
    EXPECT_EQ(f().Timer1.Interval, 10);
    EXPECT_EQ(f().sngMMGiroA, 10);
    EXPECT_TRUE(f().Timer1.Enabled) << "no engine stops for it";
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(ParametersTest, StepsAndUnitsAreStoredAndOnlyUnitsRecomputeTheTurn) {
    enter(f().lblMemSteps, f().txtSteps, "200");
    EXPECT_EQ(f().dblStepsGiroA, 0);
    enter(f().lblMMGiro, f().txtMMGiro, "10");
    EXPECT_EQ(f().dblStepsGiroA, 7200);
    enter(f().lblMemSteps, f().txtSteps, "400");
    EXPECT_EQ(f().dblStepsGiroA, 7200);
    f().lblMMGiro.DblClick.fire(); // opening recomputes too
    EXPECT_EQ(f().dblStepsGiroA, 14400);
    f().txtMMGiro.Text.load("2,5");
    f().lblMMGiro.DblClick.fire();
    EXPECT_EQ(f().sngMMGiroA, 2.5F);
    EXPECT_EQ(f().txtMMGiro.Text, "2.5");
    enter(f().lblMemStepsB, f().txtStepsB, "48");
    enter(f().lblMMGiroB, f().txtMMGiroB, "3");
    const auto records = file.read();
    EXPECT_EQ(records.integer(11), 400);
    EXPECT_EQ(records.single(12), 2.5F);
    EXPECT_EQ(records.integer(17), 48);
    EXPECT_EQ(records.single(18), 3);
}

TEST_F(ParametersTest, KeysThatMayBeTyped) {
    for (int character = 8; character < 127; ++character) {
        const bool digit = character >= '0' && character <= '9';
        const bool numeric = character >= ',' && character <= '9';
        EXPECT_EQ(f().txtSteps.press(character), digit ? character : 0) << character;
        EXPECT_EQ(f().txtMMGiroB.press(character), digit ? character : 0) << character;
        EXPECT_EQ(f().txtMMGiro.press(character), numeric ? character : 0) << character;
    }
}

class NewValueTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }

    void type(form::Label& position, const std::string& integer, const std::string& decimals, int key) {
        inDialog<form::FrmInsPosition>([=, this](form::FrmInsPosition& dialog) {
            title = dialog.Label1.Caption;
            dialog.onUnload = [this] { ++unloads; };
            dialog.txtInt.Text.load(integer);
            dialog.txtDec.Text.load(decimals);
            dialog.txtDec.KeyDown.fire(key);
        });
        position.DblClick.fire();
    }
    std::string title;
    int unloads = 0;
};

TEST_F(NewValueTest, DeclaresThePositionOfEachDisplay) {
    type(f().Label2, "123", "45", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosA, 123.45F);
    EXPECT_EQ(f().Label2.Caption, "123.45");
    EXPECT_EQ(title, "Tune Value");
    type(f().Label8, "123", "", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosB, 123);
    EXPECT_EQ(title, "Load Value");
    type(f().Label8, "", "5", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosB, 0.5F);
    type(f().Label8, "", "", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosB, 0);
    type(f().Label2, "9", "99", form::TextBox::kEscape);
    EXPECT_EQ(f().sngPosA, 123.45F);
    EXPECT_EQ(unloads, 5);
    f().mnuSat.Click.fire();
    type(f().lblAzimut, "180", "00", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosAz, 180);
    EXPECT_EQ(title, "Az. Value");
    type(f().lblElev, "45", "50", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosEl, 45.5F);
    EXPECT_EQ(f().lblElev.Caption, "45.50");
    EXPECT_EQ(title, "El. Value");
}

TEST_F(NewValueTest, StaysClosedWhileAnEngineRuns) {
    f().cmdAvB.Click.fire();
    type(f().Label2, "1", "0", form::TextBox::kEnter);
    EXPECT_EQ(f().sngPosA, 0);
    EXPECT_EQ(unloads, 0);
}

} // namespace
