#include "tests/desk.h"

#include <gmock/gmock.h>
#include <map>

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

constexpr int kReport = 10; // milliseconds

/// Both engines at 1000 steps/s, on a board that is slower than that.
class SlowBoard : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        enter(f().lblMemAltaA, f().txtAltaVelA, "1000");
        enter(f().lblMemAltaB, f().txtAltaVelB, "1000");
        board.makeSlow(clock, kReport);
        f().chkUsbOn.userClick();
    }

    void run(bool a, bool b) {
        if (a) f().cmdAv.Click.fire();
        if (a) f().cmdAlta.Click.fire();
        if (b) f().cmdAvB.Click.fire();
        if (b) f().cmdAltaB.Click.fire();
    }

    /// Lets time pass and writes down the coil patterns of both engines as they reach the board.
    void watch(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i) {
            clock.advance(1);
            note(patternsA, board.outputs() & 15);
            note(patternsB, board.outputs() >> 4);
        }
    }
    static void note(std::vector<int>& patterns, int pattern) {
        if (pattern != 0 && (patterns.empty() || patterns.back() != pattern)) patterns.push_back(pattern);
    }

    static void expectFullSteps(const std::vector<int>& patterns) {
        for (std::size_t i = 0; i < patterns.size(); ++i) {
            ASSERT_EQ(patterns[i], 8 >> (i % 4)) << i;
        }
    }
    static int steps(float position) { return static_cast<int>(std::lround(position / (10.0 / 200))); }

    std::vector<int> patternsA, patternsB;
};

TEST_F(SlowBoard, SetsTheRateAndLosesNoStep) {
    run(true, false);
    watch(1000);
    f().cmdAlt.Click.fire();
    watch(2 * kReport);
    expectFullSteps(patternsA);
    EXPECT_EQ(patternsA.size(), static_cast<std::size_t>(steps(f().sngPosA)));
    EXPECT_EQ(f().lngContaStep.value(), steps(f().sngPosA));
    EXPECT_NEAR(steps(f().sngPosA), 1000 / kReport, 2);
    EXPECT_EQ(port.data() & 15, 0b0110) << "the printer port went along";
}

TEST_F(SlowBoard, GivesBothEnginesTheirShareOfEachReport) {
    run(true, true);
    watch(1000);
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    watch(3 * kReport);
    expectFullSteps(patternsA);
    expectFullSteps(patternsB);
    EXPECT_EQ(patternsA.size(), static_cast<std::size_t>(steps(f().sngPosA)));
    EXPECT_EQ(patternsB.size(), static_cast<std::size_t>(steps(f().sngPosB)));
    EXPECT_GT(steps(f().sngPosA), 80);
    EXPECT_NEAR(steps(f().sngPosA), steps(f().sngPosB), 3);
}

TEST_F(SlowBoard, NeverStarvesAnEngineWhateverTheSpeeds) {
    for (const auto& [periodA, periodB] : std::map<int, int>{{1, 10}, {2, 5}, {3, 7}, {10, 11}, {20, 20}}) {
        const int before = steps(f().sngPosA), beforeB = steps(f().sngPosB);
        run(true, true);
        f().Timer1.Interval = periodA;
        f().Timer4.Interval = periodB;
        watch(2000);
        // Alone an engine makes a step with each report, or with each of its ticks.
        const int alone = 2000 / (kReport + periodA), aloneB = 2000 / (kReport + periodB);
        EXPECT_GE(2 * (steps(f().sngPosA) - before), alone - 2) << periodA << " beside " << periodB;
        EXPECT_GE(2 * (steps(f().sngPosB) - beforeB), aloneB - 2) << periodB << " beside " << periodA;
        f().cmdAlt.Click.fire();
        f().cmdAltB.Click.fire();
    }
    watch(3 * kReport);
    expectFullSteps(patternsA);
    expectFullSteps(patternsB);
}

TEST_F(SlowBoard, IsNamedWithTheRateThatIsLeft) {
    run(true, false);
    clock.advance(3000);
    EXPECT_EQ(f().rateNotice.Caption.get(), "Engine 1: 100 of 1000 steps/s (USB board)");
    run(false, true);
    f().cmdBassaB.Click.fire();
    f().Timer4.Interval = 40; // 25 steps/s, which the board manages
    clock.advance(2000);
    EXPECT_THAT(f().rateNotice.Caption.get(), AllOf(HasSubstr("Engine 1: "), Not(HasSubstr("Engine 2"))));
    f().cmdAltaB.Click.fire();
    clock.advance(2000);
    EXPECT_THAT(
        f().rateNotice.Caption.get(),
        AllOf(HasSubstr("Engine 1: 1"), HasSubstr(" of 1000, Engine 2: "), HasSubstr(" steps/s (USB")));
    f().cmdAlt.Click.fire();
    f().cmdBassaB.Click.fire();
    f().Timer4.Interval = 40;
    clock.advance(2000);
    EXPECT_EQ(f().rateNotice.Caption, "");
    run(true, false);
    clock.advance(2000);
    EXPECT_NE(f().rateNotice.Caption, "");
    f().cmdAlt.Click.fire();
    clock.advance(1000);
    EXPECT_EQ(f().rateNotice.Caption, "");
    run(true, false);
    clock.advance(2000);
    f().chkUsbOn.userClick();
    EXPECT_EQ(f().rateNotice.Caption, "") << "nothing holds the engine back any more";
    const int before = steps(f().sngPosA);
    clock.advance(100);
    EXPECT_EQ(steps(f().sngPosA), before + 100);
}

TEST_F(SlowBoard, GetsOffInPlaceOfWhatWaits) {
    run(true, true);
    clock.advance(105);
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    f().cmdOff.Click.fire();
    clock.advance(2 * kReport);
    EXPECT_EQ(board.outputs(), 0);
    EXPECT_TRUE(board.taken(255));
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

class LostBoard : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        f().chkUsbOn.userClick();
    }
    void expectLetGoWithOneBox() {
        const auto messages = dialogs.takeMessages();
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_THAT(messages[0].text,
                    AllOf(HasSubstr("board is gone"), HasSubstr("could NOT be switched off")));
        EXPECT_FALSE(f().chkUsbOn.ticked());
        EXPECT_EQ(f().chkUsbOn.Caption, "USB Off");
        EXPECT_EQ(f().chkUsbOn.BackColor, form::kGreen);
        EXPECT_EQ(f().lblUsb.Caption, "USB Card 0 disconnected");
        EXPECT_FALSE(f().bolUsbOn);
        clock.advance(3000);
        EXPECT_TRUE(dialogs.takeMessages().empty());
    }
};

TEST_F(LostBoard, StopsBothEnginesAndIsFoundAgain) {
    f().cmdAv.Click.fire();
    f().cmdAvB.Click.fire();
    clock.advance(100);
    const float before = f().sngPosA;
    board.breakDown("the board is gone");
    clock.advance(100);
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled);
    EXPECT_EQ(f().sngPosA, before);
    EXPECT_EQ(port.data(), 255);
    expectLetGoWithOneBox();

    board.breakDown("");
    f().chkUsbOn.userClick();
    EXPECT_EQ(f().lblUsb.Caption, "USB Card 0 connected");
    f().cmdAv.Click.fire();
    clock.advance(100);
    EXPECT_GT(f().sngPosA, before);
    EXPECT_EQ(board.outputs() & 15, f().intPesoA.value());
}

TEST_F(LostBoard, IsNoticedAtOffAndWhileNothingMoves) {
    board.breakDown("the board is gone");
    f().cmdOff.Click.fire();
    expectLetGoWithOneBox();
    board.breakDown("");
    f().chkUsbOn.userClick();
    board.breakDown("the board is gone");
    clock.advance(form::Form1::kOutputsCheckMilliseconds);
    expectLetGoWithOneBox();
}

TEST_F(LostBoard, SaysWhyACardThatIsThereIsNotOpened) {
    f().chkUsbOn.userClick();
    board.refuseWith("/dev/hidraw0: no permission");
    f().chkUsbOn.userClick();
    EXPECT_EQ(dialogs.takeMessages(),
              (std::vector<simulated::Dialogs::Message>{{"/dev/hidraw0: no permission", "Error!", true}}));
    EXPECT_EQ(f().lblUsb.Caption, "USB Card -1 not found");
    EXPECT_EQ(f().chkUsbOn.Caption, "USB On");
}

} // namespace
