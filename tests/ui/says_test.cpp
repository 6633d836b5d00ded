#include "tests/ui/window_fixture.h"

#include <QMenu>

namespace {

class Says : public WindowFixture {
  protected:
    QLabel& label(const char* name) { return widget<QLabel>(name); }
};

TEST_F(Says, SpaceOnOutOffWaitsForTheUsersOwnFocus) {
    label("lblMemAltaA").setFocus();
    QTest::keyClick(&label("lblMemAltaA"), Qt::Key_F2);
    settle();
    EXPECT_TRUE(widget("txtAltaVelA").hasFocus());
    QTest::keyClick(&widget("txtAltaVelA"), Qt::Key_Return);
    settle();
    ASSERT_TRUE(widget("cmdOff").hasFocus());
    int presses = 0;
    f().cmdOff.Click.attach([&] { ++presses; });
    QTest::keyClick(&widget("cmdOff"), Qt::Key_Space);
    EXPECT_EQ(presses, 0);
    QTest::keyClick(&widget("cmdOff"), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    ASSERT_TRUE(widget("cmdOff").hasFocus());
    QTest::keyClick(&widget("cmdOff"), Qt::Key_Space);
    EXPECT_EQ(presses, 1);
    click("cmdOff");
    EXPECT_EQ(presses, 2);
}

TEST_F(Says, EscInAnEntryRestoresItAndStopsTheEngines) {
    f().cmdBAvMan.MouseDown.fire();
    QTest::mouseDClick(&widget("txtAltaVelA"), Qt::LeftButton);
    settle();
    QTest::keyClicks(&widget("txtAltaVelA"), "5.");
    settle();
    EXPECT_EQ(text("entryNoticeA"), "fast: whole numbers only here");
    QTest::keyClick(&widget("txtAltaVelA"), Qt::Key_Escape);
    settle();
    EXPECT_EQ(f().txtAltaVelA.Text, "200");
    EXPECT_FALSE(widget("txtAltaVelA").isEnabled());
    EXPECT_TRUE(label("lblMemAltaA").hasFocus());
    EXPECT_TRUE(stands());
}

TEST_F(Says, WhatIsGreyTellsWhy) {
    EXPECT_TRUE(widget("chkAutoMemOnOff").toolTip().contains("F10"));
    EXPECT_TRUE(widget("Option3").toolTip().contains("Empty"));
    EXPECT_TRUE(widget("chkUsbOn").toolTip().contains("Ctrl+H"));
    f().intConnProgrTuner = 0;
    f().cmdAvMan.MouseDown.fire();
    settle();
    EXPECT_TRUE(widget("cmdAutoMemConn").toolTip().contains("Tuner Connections, Ctrl+T"));
    EXPECT_TRUE(widget("cmdOff").toolTip().contains("Esc"));
    f().cmdAvMan.MouseUp.fire();
    f().strCW1 = f().strCCW2 = "q";
    f().mnuSat.Click.fire();
    settle();
    EXPECT_TRUE(widget("cmdAvMan").toolTip().contains("letter q is also that of << of Elevation"));
    EXPECT_TRUE(widget("chkRotOnOff").toolTip().contains("Sat Connections"));
}

TEST_F(Says, AMemorysMenuRecallsRenamesAndClears) {
    storeMemory(4, 1, 2, "7.050");
    settle();
    const auto choose = [this](const char* entry) {
        QTest::mouseClick(&widget("memoryMenu4"), Qt::LeftButton);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        for (QAction* action : menu->actions()) {
            if (action->text().remove('&').startsWith(entry)) action->trigger();
        }
        menu->close();
        settle();
    };
    f().sngPosA = 0;
    choose("Recall");
    EXPECT_FALSE(stands());
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    dialogs.textAnswers.emplace_back("14.020");
    choose("Rename");
    EXPECT_EQ(text("lblFr4"), "14.020");
    choose("Clear");
    EXPECT_EQ(text("strMemPosA4"), "–");
    EXPECT_FALSE(widget("Option4").isEnabled());
    QApplication::setActiveWindow(&window()); // the menu had it
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(text("lblFr4"), "14.020");
}

TEST_F(Says, TheTargetStandsBesideTheDigits) {
    storeMemory(1, 50, 0, "7.050");
    f().sngPosA = 0;
    f().Option[1].userClick();
    settle();
    EXPECT_TRUE(widget("barA").isVisible());
    EXPECT_EQ(text("lblTargetA"), "▸ 50.00");
    EXPECT_GT(widget("lblTargetA").geometry().left(), widget("Label2").geometry().right());
    EXPECT_TRUE(widget("cmdGoOn").isHidden());
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    settle();
    EXPECT_FALSE(widget("barA").isVisible());
    EXPECT_TRUE(widget("cmdGoOn").isVisible());
    EXPECT_EQ(text("lblFit"), "stopped before 7.050");
}

} // namespace
