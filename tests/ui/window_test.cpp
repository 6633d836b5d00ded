#include "tests/ui/window_fixture.h"
#include "ui/key_repeat.h"
#include "ui/toggles.h"

#include <gmock/gmock.h>

namespace {

class Window : public WindowFixture {};

TEST_F(Window, ShowsPositionAndLampsWhileAJogButtonIsHeld) {
    QTest::mousePress(&widget("cmdAvMan"), Qt::LeftButton);
    clock.advance(std::chrono::microseconds(1'009'900)); // a step is near for good: drawn all the same
    settle();
    EXPECT_TRUE(f().Timer1.Enabled);
    EXPECT_EQ(text("Label2").toStdString(), f().Label2.Caption.get());
    EXPECT_EQ(text("Label2"), "5.00"); // 100 steps of 0.05
    EXPECT_EQ(text("lblUsoA"), "Manual");
    int lit = 0;
    for (const char* lamp : {"out1", "out2", "out3", "out4"}) {
        lit += widget<ui::Lamp>(lamp).colour() == QColor(255, 0, 0) ? 1 : 0;
    }
    EXPECT_EQ(lit, 1);
    EXPECT_FALSE(widget("cmdOff").isEnabled());
    QTest::mouseRelease(&widget("cmdAvMan"), Qt::LeftButton);
    EXPECT_TRUE(stands());
    settle();
    EXPECT_TRUE(widget("cmdOff").isEnabled());
}

TEST_F(Window, AJogEndsWhenItsReleaseGetsLost) {
    QWidget& jog = widget("cmdBIndMan");
    const std::function<void()> losses[] = {
        [&] { widget("cmdAlta").setFocus(); },
        [&] { f().cmdBIndMan.Visible = false, settle(), f().cmdBIndMan.Visible = true; },
        [&] { f().cmdBIndMan.Enabled = false, settle(), f().cmdBIndMan.Enabled = true; },
        [&] { QApplication::setActiveWindow(nullptr), QApplication::setActiveWindow(&window()); },
        [&] {
            withDialog([&] { f().mnuSplash.Click.fire(); },
                       [&](QWidget& about) {
                           EXPECT_TRUE(stands());
                           QTest::keyClick(&about, Qt::Key_Escape);
                       });
        },
    };
    int number = 0;
    for (const auto& lose : losses) {
        SCOPED_TRACE(number++);
        QTest::mousePress(&jog, Qt::LeftButton);
        EXPECT_TRUE(f().Timer3.Enabled);
        lose();
        EXPECT_TRUE(stands());
        QTest::mouseRelease(&jog, Qt::LeftButton);
        settle();
    }
}

TEST_F(Window, AHeldSpaceKeyJogsOnceHoweverOftenItRepeats) {
    int presses = 0, releases = 0;
    f().cmdIndMan.MouseDown.attach([&] { ++presses; });
    f().cmdIndMan.MouseUp.attach([&] { ++releases; });
    QWidget& jog = widget("cmdIndMan");
    jog.setFocus();
    QTest::keyPress(&jog, Qt::Key_Space);
    for (int i = 0; i < 5; ++i) {
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, " ", true);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
        QApplication::sendEvent(&jog, &up);
        QApplication::sendEvent(&jog, &down);
    }
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(releases, 0);
    QTest::keyRelease(&jog, Qt::Key_Space);
    EXPECT_EQ(releases, 1);
}

TEST_F(Window, AHeldKeyRunsOnThroughTheRepeatsOfX11) {
    ui::KeyRepeat keys(nullptr);
    QApplication::instance()->installEventFilter(&keys);
    std::string heard;
    f().cmdIndMan.MouseDown.attach([&] { heard += "down "; });
    f().cmdIndMan.MouseUp.attach([&] { heard += "up "; });
    widget("cmdIndMan").setFocus();
    const auto send = [&](QEvent::Type type, quint64 time) {
        QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, " ");
        event.setTimestamp(time);
        QApplication::sendEvent(window().windowHandle(), &event);
    };
    send(QEvent::KeyPress, 1);
    for (quint64 time = 500; time < 600; time += 30) {
        send(QEvent::KeyRelease, time);
        send(QEvent::KeyPress, time);
    }
    settle();
    EXPECT_EQ(heard, "down ");
    send(QEvent::KeyRelease, 700);
    settle();
    EXPECT_EQ(heard, "down up ");
    // One that comes at once after it is the user's own.
    send(QEvent::KeyPress, 800);
    send(QEvent::KeyRelease, 810);
    send(QEvent::KeyPress, 811);
    EXPECT_EQ(heard, "down up down up down ");
}

TEST_F(Window, EscStopsBothEnginesFromAnywhereInTheWindow) {
    for (const char* focus : {"Option1", "chkUsbOn", "hScrCmdOff", "txtAltaVelB", "cmdAvMan"}) {
        SCOPED_TRACE(focus);
        f().lblMemAltaB.DblClick.fire(); // opens the entry, which may have the focus
        f().Option[1].Enabled = true;
        settle();
        widget(focus).setFocus();
        f().cmdAv.Click.fire();
        f().cmdIndB.Click.fire();
        QTest::keyClick(&widget(focus), Qt::Key_Escape);
        EXPECT_TRUE(stands());
        if (f().txtAltaVelB.Enabled) f().lblMemAltaB.DblClick.fire();
    }
}

TEST_F(Window, TheBigStopStopsItsEngineAlone) {
    f().cmdAv.Click.fire();
    f().cmdAvB.Click.fire();
    click("cmdAlt");
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_TRUE(f().Timer4.Enabled);
    QTest::keyClick(&window(), Qt::Key_F7);
    EXPECT_TRUE(stands());
    const QSize stop = widget("cmdAlt").size();
    for (const char* other : {"cmdAvMan", "cmdIndMan", "cmdAlta", "cmdBassa", "cmdResetA", "cmdOff"}) {
        const QSize size = widget(other).size();
        EXPECT_LT(size.width() * size.height() * 3, stop.width() * stop.height() * 2) << other;
    }
}

TEST_F(Window, AParameterIsOpenedTypedAndConfirmedByKeyboardOrMouse) {
    QWidget& box = widget("txtMMGiro");
    EXPECT_FALSE(box.isEnabled());
    widget("lblMMGiro").setFocus();
    QTest::keyClick(&widget("lblMMGiro"), Qt::Key_F2);
    EXPECT_TRUE(box.isEnabled());
    EXPECT_TRUE(box.hasFocus());
    QTest::keyClicks(&box, "1x2,5"); // the text is selected, so the first digit replaces it
    QTest::keyClick(&box, Qt::Key_Backspace);
    EXPECT_EQ(f().txtMMGiro.Text.get(), "12,5");
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClick(&box, Qt::Key_Return);
    settle();
    EXPECT_FLOAT_EQ(f().sngMMGiroA, 12.5F);
    EXPECT_FALSE(box.isEnabled());
    EXPECT_TRUE(widget("cmdOff").hasFocus());

    QTest::mouseDClick(&widget("txtSteps"), Qt::LeftButton);
    settle();
    EXPECT_TRUE(widget("txtSteps").isEnabled());
}

TEST_F(Window, TextThatPassesNoFilterIsJudgedByTheControl) {
    f().lblMemSteps.DblClick.fire();
    auto& box = widget<QLineEdit>("txtSteps");
    QTest::mouseClick(&box, Qt::LeftButton);
    box.selectAll();
    box.insert("many"); // unlike typing and pasting
    EXPECT_EQ(f().txtSteps.Text.get(), "many");
    QTest::keyClick(&box, Qt::Key_Return);
    settle();
    EXPECT_EQ(text("entryNoticeA"), "steps/r: enter at most 32767");
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_TRUE(box.isEnabled());
}

TEST_F(Window, MemoriesShowWhatTheyHoldAndArrowKeysRecallNothing) {
    EXPECT_FALSE(widget("Option2").isEnabled());
    for (int n : {1, 2}) {
        dialogs.okAnswers = {true};
        dialogs.textAnswers = {n == 1 ? "<b>7&8</b>" : "14.020"};
        f().sngPosA = 12.35F * static_cast<float>(n);
        QTest::mouseDClick(&widget(n == 1 ? "lblMem1" : "lblMem2"), Qt::LeftButton);
    }
    settle();
    EXPECT_EQ(text("lblFr1"), "<b>7&8");
    EXPECT_EQ(widget<QLabel>("lblFr1").textFormat(), Qt::PlainText);
    EXPECT_EQ(text("strMemPosA1"), "012.35");
    EXPECT_EQ(text("strMemPosA3"), QStringLiteral("–"));
    EXPECT_FALSE(widget("Option1").toolTip().contains("<b>"));

    auto& second = widget<ui::OptionDot>("Option2");
    widget("Option1").setFocus();
    QTest::keyClick(&widget("Option1"), Qt::Key_Down);
    EXPECT_TRUE(second.hasFocus());
    EXPECT_TRUE(stands());
    QTest::keyClick(&second, Qt::Key_Space);
    settle();
    EXPECT_TRUE(second.isChecked());
    EXPECT_EQ(text("lblUsoB"), "14.020");
    click("Option1");
    EXPECT_FALSE(second.isChecked());
    for (const char* part : {"lblMem2", "lblFr3"}) { // the first stores, the other is empty
        click(part);
        EXPECT_TRUE(widget<ui::OptionDot>("Option1").isChecked());
    }
    click("lblFr2");
    EXPECT_TRUE(second.isChecked());
    click("cmdAvMan"); // a jog leaves none of them selected
    EXPECT_FALSE(widget<ui::OptionDot>("Option1").isChecked());
}

TEST_F(Window, ACheckBoxShowsWhatItsControlSays) {
    auto& automatic = widget<ui::TickBox>("chkAutoMemOnOff");
    f().chkAutoMemOnOff.Enabled = true;
    f().Label8.Caption = "-1.00";
    settle();
    click("chkAutoMemOnOff"); // refused below zero
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_FALSE(automatic.isChecked());
    f().Label8.Caption = "1.00";
    click("chkAutoMemOnOff");
    EXPECT_TRUE(automatic.isChecked());
    EXPECT_EQ(text("lblAutoMemOnOff"), "Auto");
}

TEST_F(Window, SlidersFollowBothWays) {
    auto& slider = widget<QSlider>("hScrCmdOff");
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_PageUp);
    settle();
    EXPECT_EQ(f().hScrCmdOff.Value, slider.value());
    EXPECT_EQ(text("lblAutoCmdOff"), QString::number(slider.value()));
    f().hScrCmdOff.load(20);
    settle();
    EXPECT_EQ(slider.value(), 20);
}

TEST_F(Window, FunctionsSwapTheirZones) {
    f().mnuSat.Click.fire();
    settle();
    EXPECT_TRUE(widget("framSat").isVisible());
    EXPECT_FALSE(widget("framTuner").isVisible());
    EXPECT_TRUE(widget("cmdAv").isVisible());
    EXPECT_TRUE(widget("lblAzimut").isVisible());
    EXPECT_FALSE(widget("Label2").isVisible());
    EXPECT_EQ(text("lblEngineB"), "Elevation");
    EXPECT_EQ(widget("cmdAltB").accessibleName(), "Stop Elevation");
    EXPECT_TRUE(window().findChild<QAction*>("mnuSat")->isChecked());
    window().findChild<QAction*>("mnuAmpli")->trigger();
    settle();
    EXPECT_TRUE(widget("framTuner").isVisible());
    EXPECT_FALSE(widget("cmdAv").isVisible());
    EXPECT_FALSE(window().findChild<QAction*>("mnuSat")->isChecked());
    EXPECT_TRUE(window().findChild<QAction*>("mnuAmpli")->isChecked());
}

TEST_F(Window, TheChosenFrequencyLiesInFront) {
    f().lblLog32DataM.Caption = "14.200.000";
    f().lblFreqN1MM.Caption = "7050.5";
    f().lblLog32DataM.bringToFront();
    settle();
    EXPECT_TRUE(widget("lblLog32DataM").isVisible());
    EXPECT_FALSE(widget("lblFreqN1MM").isVisible());
    f().lblFreqN1MM.bringToFront();
    EXPECT_TRUE(widget("lblFreqN1MM").isVisible());
    EXPECT_FALSE(widget("lblLog32DataM").isVisible());
}

TEST_F(Window, ChangesAreDrawnTogetherAndNothingMovesForThem) {
    const QRect place = widget("lblBandMode").geometry(), digits = widget("Label2").geometry();
    for (int i = 0; i < 1000; ++i) {
        f().Label2.Caption = std::to_string(i) + ".25";
    }
    EXPECT_EQ(text("Label2"), "0") << "drawn before the event loop had its turn";
    f().lblBandCh.Visible = true;
    settle();
    EXPECT_EQ(text("Label2"), "999.25");
    EXPECT_EQ(widget("Label2").geometry(), digits);
    EXPECT_EQ(widget("lblBandMode").geometry(), place);
}

TEST_F(Window, ClosingAsksTheProgramAndClosesNothingItself) {
    int asked = 0;
    window().onCloseRequested = [&] { ++asked; };
    window().close();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window().isVisible());
}

} // namespace
