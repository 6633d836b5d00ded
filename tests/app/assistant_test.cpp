#include "form/assistant.h"
#include "tests/desk.h"

namespace {

using form::FrmAssistant;

class AssistantTest : public Desk {
  protected:
    void withAssistant(const std::function<void(FrmAssistant&)>& script) {
        inDialog<FrmAssistant>([&](FrmAssistant& dialog) {
            closed_ = false;
            dialog.onUnload = [this] { closed_ = true; };
            script(dialog);
            if (!closed_) dialog.cancel();
            EXPECT_TRUE(closed_);
        });
        f().mnuAssistant.Click.fire();
    }
    static void next(FrmAssistant& dialog, int pages = 1) {
        for (int i = 0; i < pages; ++i)
            dialog.cmdNext.Click.fire();
    }
    static void skipTo(FrmAssistant& dialog, FrmAssistant::Page page) {
        while (!dialog.page[page].Visible)
            dialog.cmdSkip.Click.fire();
    }
    bool stands() { return f().cmdOff.Enabled; }
    /// All parameters of both engines, as the window shows them and as they are stored.
    std::vector<std::string> parameters() {
        config::RecordImage records = file.read();
        std::vector<std::string> all;
        for (const form::TextBox* box :
             {&f().txtSteps, &f().txtMMGiro, &f().txtBassaVelA, &f().txtAltaVelA, &f().txtStepsB,
              &f().txtMMGiroB, &f().txtBassaVelB, &f().txtAltaVelB})
            all.push_back(box->Text);
        for (const int number : {config::record::kStepsA, config::record::kSlowA, config::record::kFastA,
                                 config::record::kStepsB, config::record::kSlowB, config::record::kFastB})
            all.push_back(std::to_string(records.integer(number).value()));
        for (const int value : {f().intStepsA.value(), f().intVelBassaA.value(), f().intVelAltaA.value(),
                                f().intTickAltaA.value(), f().intTickAltaB.value()})
            all.push_back(std::to_string(value));
        return all;
    }

    bool closed_ = false;
};

TEST_F(AssistantTest, LeadsFromAnEmptyFolderToARecalledMemory) {
    start();
    EXPECT_TRUE(f().framInvite.Visible);
    withAssistant([this](FrmAssistant& dialog) {
        dialog.optCoilTuner.userClick();
        next(dialog);
        EXPECT_EQ(f().intFunzione, form::kCoilTuner);
        EXPECT_FALSE(f().framInvite.Visible);
        next(dialog); // outputs
        EXPECT_EQ(dialog.engineA.txtStepsR.Text, "200");
        dialog.engineA.txtUnitsR.Text = "10";
        dialog.engineA.cmdOnce.Click.fire();
        clock.advance(10'000);
        EXPECT_TRUE(stands());
        EXPECT_NEAR(f().sngPosA, 10, 1e-3);
        dialog.engineA.txtAsked.Text = "100";
        dialog.engineA.txtMeasured.Text = "98,5";
        dialog.engineA.cmdCorrect.Click.fire();
        EXPECT_EQ(dialog.engineA.txtUnitsR.Text, "9.85");
        EXPECT_EQ(file.read().single(config::record::kUnitsA), 0); // not before Next
        next(dialog);
        EXPECT_FLOAT_EQ(file.read().single(config::record::kUnitsA), 9.85F);
        dialog.engineA.cmdTryForward.MouseDown.fire();
        clock.advance(600 * 13 + 100); // 20 ms a step, and 13 times shorter
        dialog.engineA.cmdTryForward.MouseUp.fire();
        EXPECT_TRUE(stands());
        EXPECT_EQ(dialog.engineA.txtFast.Text, "90"); // 11 ms for the 7 at release
        next(dialog);
        EXPECT_EQ(file.read().integer(config::record::kFastA), 90);
        EXPECT_EQ(f().intTickAltaA, 11);
        dialogs.okAnswers = {true};
        dialog.engineA.cmdZero.Click.fire();
        EXPECT_EQ(f().sngPosA, 0);
        dialog.engineA.cmdForward.MouseDown.fire();
        clock.advance(3000);
        dialog.engineA.cmdForward.MouseUp.fire();
        const float place = f().sngPosA;
        EXPECT_GT(place, 1);
        dialogs.okAnswers = {true};
        dialogs.textAnswers = {"14.020"};
        EXPECT_FALSE(dialog.cmdRecall.Enabled);
        dialog.cmdStore.Click.fire();
        clock.advance(FrmAssistant::kLookMilliseconds);
        EXPECT_EQ(f().lblFr[1].Caption, "14.020");
        ASSERT_TRUE(dialog.cmdRecall.Enabled);
        dialog.engineA.cmdBackward.MouseDown.fire();
        clock.advance(2000);
        dialog.engineA.cmdBackward.MouseUp.fire();
        dialog.cmdRecall.Click.fire();
        EXPECT_FALSE(stands());
        clock.advance(10'000);
        EXPECT_TRUE(stands());
        EXPECT_NEAR(f().sngPosA, place, 0.06);
        next(dialog, 2);
        dialog.chkOffAlone.Value = dialog.chkKeepPositions.Value = 1;
        dialog.txtOffSeconds.Text = "8";
        next(dialog);
        EXPECT_TRUE(closed_);
    });
    EXPECT_TRUE(f().bolAutoCmdOff);
    EXPECT_EQ(file.read().integer(config::record::kAutoOffSeconds), 8);
    EXPECT_TRUE(file.read().boolean(config::record::kSavePositions));
    start();
    EXPECT_FALSE(f().framInvite.Visible);
    EXPECT_EQ(f().lblFr[1].Caption, "14.020");
}

TEST_F(AssistantTest, SkipBackAndCancelLeaveWhatThePageFound) {
    startTuner();
    const auto before = parameters();
    const std::function<void(FrmAssistant&)> leaves[] = {
        [](FrmAssistant& dialog) { dialog.cmdSkip.Click.fire(); },
        [](FrmAssistant& dialog) { dialog.cmdBack.Click.fire(); },
        [](FrmAssistant& dialog) { dialog.cmdExitAssistant.Click.fire(); },
        [](FrmAssistant& dialog) { dialog.cancel(); }};
    for (const auto& leave : leaves) {
        f().sngPosA = 0;
        const auto halfSteps = f().halfStepsA;
        withAssistant([&](FrmAssistant& dialog) {
            skipTo(dialog, FrmAssistant::kMotor);
            dialog.engineA.txtStepsR.Text = "48";
            dialog.engineA.chkHalf.Value = 1;
            dialog.engineB.txtUnitsR.Text = "3";
            dialog.engineB.cmdOnce.Click.fire();
            dialog.engineA.cmdOnce.Click.fire();
            clock.advance(95); // a half step of A is tried as 1/96 of a turn
            f().cmdAlt.Click.fire();
            f().cmdAltB.Click.fire();
            f().sngPosA = 7; // what was counted
            leave(dialog);
        });
        const auto made = static_cast<double>(f().halfStepsA - halfSteps);
        EXPECT_GT(made, 5);
        EXPECT_NEAR(f().sngPosA, made * 10 / 400, 1e-3);
        EXPECT_EQ(parameters(), before);
        EXPECT_FALSE(f().bolHalfStepA);
        withAssistant([&](FrmAssistant& dialog) {
            skipTo(dialog, FrmAssistant::kSpeeds);
            dialog.engineA.cmdTryForward.MouseDown.fire();
            clock.advance(3000);
            dialog.engineA.cmdTryForward.MouseUp.fire();
            leave(dialog);
        });
        EXPECT_EQ(parameters(), before);
    }
}

TEST_F(AssistantTest, NothingGoesOnBehindAPageThatIsLeft) {
    startTuner();
    const std::function<void(FrmAssistant&)> starts[] = {
        [&](FrmAssistant& d) { skipTo(d, FrmAssistant::kOutputs), d.engineB.cmdTurn.Click.fire(); },
        [&](FrmAssistant& d) { skipTo(d, FrmAssistant::kMotor), d.engineA.cmdOnce.Click.fire(); },
        [&](FrmAssistant& d) { skipTo(d, FrmAssistant::kSpeeds), d.engineB.cmdTryBackward.MouseDown.fire(); },
        [&](FrmAssistant& d) { skipTo(d, FrmAssistant::kPositions), d.engineA.cmdForward.MouseDown.fire(); }};
    const std::function<void(FrmAssistant&)> ends[] = {
        [](FrmAssistant& d) { d.cmdNext.Click.fire(); },
        [](FrmAssistant& d) { d.cmdSkip.Click.fire(); },
        [](FrmAssistant& d) { d.cmdBack.Click.fire(); },
        [](FrmAssistant& d) { d.cmdExitAssistant.Click.fire(); },
        [](FrmAssistant& d) { d.cmdStopAll.Click.fire(); },
        [](FrmAssistant& d) { d.onPause(); },
        [](FrmAssistant& d) { d.cancel(); }};
    for (std::size_t i = 0; i < std::size(starts); ++i) {
        for (std::size_t k = 0; k < std::size(ends); ++k) {
            SCOPED_TRACE(std::to_string(i) + " " + std::to_string(k));
            withAssistant([&](FrmAssistant& dialog) {
                starts[i](dialog);
                EXPECT_TRUE(!stands() || dialog.tmrCoils.Enabled);
                ends[k](dialog);
                EXPECT_TRUE(stands());
                EXPECT_FALSE(dialog.tmrCoils.Enabled || dialog.tmrTry.Enabled);
                port.takeAccesses();
                clock.advance(2000);
                EXPECT_TRUE(port.takeAccesses().empty());
            });
        }
    }
}

TEST_F(AssistantTest, CancelClosesAndEscapeStopsFirst) {
    startTuner();
    for (const bool escape : {true, false}) {
        withAssistant([&](FrmAssistant& dialog) {
            skipTo(dialog, FrmAssistant::kMotor);
            dialog.engineA.cmdOnce.Click.fire();
            EXPECT_TRUE(!escape || dialog.onEscape());
            EXPECT_EQ(stands(), escape);
            EXPECT_FALSE(closed_);
            EXPECT_FALSE(escape && dialog.onEscape());
            dialog.cmdExitAssistant.Click.fire();
            EXPECT_TRUE(stands());
            EXPECT_TRUE(closed_);
        });
    }
}

TEST_F(AssistantTest, TheBoardIsOffAgainBehindATestThatIsLeft) {
    hardware.use({.port = "simulated", .usb = "simulated"});
    startTuner();
    const std::function<void(FrmAssistant&)> leaves[] = {
        [](FrmAssistant& d) { d.cmdSkip.Click.fire(); }, [](FrmAssistant& d) { d.cmdBack.Click.fire(); },
        [](FrmAssistant& d) { d.cmdExitAssistant.Click.fire(); }, [](FrmAssistant& d) { d.cancel(); }};
    for (const auto& leave : leaves) {
        withAssistant([&](FrmAssistant& dialog) {
            skipTo(dialog, FrmAssistant::kOutputs);
            dialog.engineA.cmdTurn.Click.fire();
            EXPECT_TRUE(f().chkUsbOn.ticked());
            leave(dialog);
            EXPECT_FALSE(f().chkUsbOn.ticked());
        });
    }
    withAssistant([&](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kOutputs);
        dialog.engineA.cmdTurn.Click.fire();
        next(dialog);
        EXPECT_TRUE(f().chkUsbOn.ticked());
    });
}

TEST_F(AssistantTest, WhatItDeclaresAndStoresIsUndoneByCancelOrLater) {
    startTuner();
    const auto declare = [this](FrmAssistant& dialog) {
        f().sngPosA = 5;
        skipTo(dialog, FrmAssistant::kPositions);
        dialogs.okAnswers = {true, true};
        dialogs.textAnswers = {"14.020"};
        dialog.engineA.cmdZero.Click.fire();
        dialog.cmdStore.Click.fire();
        dialog.engineA.cmdForward.MouseDown.fire();
        clock.advance(105);
        dialog.engineA.cmdForward.MouseUp.fire();
    };
    withAssistant(declare); // and Cancel
    EXPECT_EQ(f().lblFr[1].Caption, "");
    EXPECT_FLOAT_EQ(f().sngPosA, 5.5); // with the ten steps made since
    withAssistant([&](FrmAssistant& dialog) {
        declare(dialog);
        next(dialog, 3);
    });
    EXPECT_EQ(f().mnuUndo.Caption, "&Undo: Memory 1 stored");
    f().mnuUndo.Click.fire();
    EXPECT_EQ(f().lblFr[1].Caption, "");
    f().mnuUndo.Click.fire();
    EXPECT_FLOAT_EQ(f().sngPosA, 5.5);
}

TEST_F(AssistantTest, AMeasurementCorrectsOnce) {
    startTuner();
    withAssistant([this](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kMotor);
        form::AssistantEngine& engine = dialog.engineA;
        engine.txtAsked.Text = "5";
        engine.cmdMove.Click.fire();
        clock.advance(5000);
        engine.txtUnitsR.Text = "20"; // not what the move was made with
        engine.txtMeasured.Text = "6";
        engine.cmdCorrect.Click.fire();
        EXPECT_EQ(engine.lblCorrected.Caption, "10 becomes 12");
        engine.cmdCorrect.Click.fire();
        EXPECT_EQ(engine.txtUnitsR.Text, "12");
        EXPECT_EQ(dialog.lblTrouble.Caption, "Engine 1, measured: type a number that is not 0");
    });
}

TEST_F(AssistantTest, APageWithoutAFunctionIsNotTaken) {
    start();
    withAssistant([](FrmAssistant& dialog) {
        next(dialog);
        EXPECT_TRUE(dialog.page[FrmAssistant::kFunction].Visible);
        EXPECT_EQ(dialog.lblTrouble.Caption, "Choose what the motors turn");
    });
}

TEST_F(AssistantTest, NamesTheWiresOfTheEngineThatTrembles) {
    startTuner();
    withAssistant([this](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kOutputs);
        dialog.engineB.cmdTurn.Click.fire();
        EXPECT_EQ(dialog.engineB.lamp[1].FillColor, form::kRed);
        EXPECT_EQ(dialog.engineA.lamp[1].FillColor, form::kBlack);
        clock.advance(60 * 4 * 12 + 10);
        EXPECT_FALSE(dialog.tmrCoils.Enabled); // over by itself
        dialog.engineB.cmdTrembled.Click.fire();
        EXPECT_EQ(dialog.engineB.lblWires.Caption, "Exchange wires 6 and 7, then Turn again");
        EXPECT_EQ(dialog.engineB.wiresToSwap, std::pair(2, 3));
        dialog.engineB.cmdTrembled.Click.fire();
        EXPECT_EQ(dialog.engineB.lblWires.Caption, "Press Turn first");
        const std::pair<form::Button&, const char*> answers[] = {
            {dialog.engineB.cmdTrembled, "Exchange wires 7 and 8, then Turn again"},
            {dialog.engineB.cmdWrong, "Exchange wires 5 and 7, then Turn again"},
            {dialog.engineB.cmdRight, "The wires are right"}};
        for (const auto& [answer, advice] : answers) {
            dialog.engineB.cmdCoils.Click.fire();
            dialog.engineB.cmdTurn.Click.fire(); // in place of the other test
            EXPECT_TRUE(dialog.tmrCoils.Enabled);
            answer.Click.fire();
            EXPECT_EQ(dialog.engineB.lblWires.Caption, advice);
        }
        EXPECT_FALSE(dialog.engineB.wiresToSwap);
        EXPECT_EQ(dialog.engineA.lblWires.Caption, "");
    });
}

TEST_F(AssistantTest, APageWithAWrongEntryIsNotLeft) {
    startTuner();
    const auto before = parameters();
    withAssistant([](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kMotor);
        dialog.engineB.txtStepsR.Text = "1.5";
        next(dialog);
        EXPECT_TRUE(dialog.page[FrmAssistant::kMotor].Visible);
        EXPECT_EQ(dialog.lblTrouble.Caption, "Engine 2, steps/r: type a whole number from 1 to 32767");
        dialog.cmdSkip.Click.fire();
        dialog.cmdSkip.Click.fire();
        skipTo(dialog, FrmAssistant::kSaving);
        dialog.txtOffSeconds.Text = "33";
        next(dialog);
        EXPECT_EQ(dialog.lblTrouble.Caption, "Type a time from 1 to 32 seconds");
    });
    EXPECT_EQ(parameters(), before);
}

TEST_F(AssistantTest, ShowsWhatIsHeardNow) {
    startTuner();
    withAssistant([this](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kSource);
        EXPECT_EQ(dialog.lblHeard.Caption, "nothing heard yet");
        dialog.cmdLink.Click.fire();
        EXPECT_EQ(dialog.cmdLink.Caption, "Disconnect");
        tune(1'402'550);
        clock.advance(2 * FrmAssistant::kLookMilliseconds);
        EXPECT_EQ(dialog.lblHeard.Caption, "14.0255 MHz");
    });
    EXPECT_FALSE(f().sourceConnected()); // as the page found it
    EXPECT_EQ(f().lblFreqNote.Caption, "kHz, not current");
    f().mnuSat.Click.fire();
    withAssistant([](FrmAssistant& dialog) {
        skipTo(dialog, FrmAssistant::kSource);
        EXPECT_FALSE(dialog.cmdLink.Visible);
        EXPECT_FALSE(dialog.cmbMemory.Visible);
        EXPECT_EQ(dialog.lblAsk.Caption, "Which program says where the antenna is to point?");
    });
}

} // namespace
