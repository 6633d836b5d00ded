#include "engine/motion.h"
#include "engine/stepper.h"
#include "tests/simulated_outside.h"

#include <gtest/gtest.h>

namespace {

/// Both engines with their commands alone: 200 steps/r, 10 units/r, periods of 10 ms slow and 5 ms fast.
class CommandsTest : public ::testing::Test, protected SimulatedOutside {
  protected:
    void SetUp() override {
        form.intFunzione = form::kCoilTuner;
        for (const engine::Side* side : {&a, &b}) {
            side->intSteps = 200;
            side->sngMMGiro = 10;
            side->intTickAlta = 5;
            side->intTickBassa = 10;
            side->intFase = 1;
        }
    }

    form::Form1 form{clock, links};
    form::Boxes boxes{dialogs};
    engine::OutputPorts outputs{form, boxes, port, board};
    engine::Motion motion{form, boxes};
    engine::Stepper stepper{form, boxes, outputs, motion};
    engine::Sides sides{form};
    engine::Side& a = sides.a;
    engine::Side& b = sides.b;
};

TEST_F(CommandsTest, AMoveArrivesWhateverTheSignOfItsStep) {
    struct Case {
        int steps;
        float units, from, to;
        int direction;
    };
    const Case cases[] = {{200, 10, 0, 2, form::kForward},     {200, 10, 2, -1, form::kBackward},
                          {200, -10, 0, 2, form::kBackward},   {200, -10, 2, -1, form::kForward},
                          {-200, 10, 0, 2, form::kBackward},   {-200, -10, 2, -1, form::kBackward},
                          {200, -10, 0, 1200, form::kBackward}};
    for (const engine::Side* side : {&a, &b}) {
        for (const Case& c : cases) {
            side->intSteps = c.steps;
            side->sngMMGiro = c.units;
            side->sngPos = c.from;
            EXPECT_TRUE(motion.moveTo(*side, c.to));
            EXPECT_TRUE(side->timer(c.direction).Enabled) << c.units << " " << c.to;
            clock.advance(c.to > 999 ? 250'000 : 1000);
            EXPECT_FALSE(side->running()) << c.units << " " << c.to;
            EXPECT_NEAR(side->sngPos, std::min(c.to, 999.0F), 0.6) << c.units;
            EXPECT_FALSE(side->bolMem);
        }
    }
}

TEST_F(CommandsTest, ATargetIsReachedOnTheVeryStepThatSinglesHoldExactly) {
    for (const engine::Side* side : {&a, &b}) {
        side->sngMMGiro = 50; // a quarter a step
        for (const auto& [from, to, milliseconds] :
             {std::tuple(0.0F, 3.0F, 120), std::tuple(3.0F, 0.5F, 100), std::tuple(0.5F, 0.75F, 10)}) {
            side->sngPos = from;
            motion.moveTo(*side, to);
            clock.advance(milliseconds - 1);
            EXPECT_TRUE(side->running());
            clock.advance(1);
            EXPECT_FALSE(side->running());
            EXPECT_EQ(side->sngPos, to);
        }
    }
}

TEST_F(CommandsTest, TheEndOfRunHoldsWhereThePositionReallyMoves) {
    for (const engine::Side* side : {&a, &b}) {
        side->sngMMGiro = -10;
        side->sngPos = 998.8F;
        EXPECT_TRUE(motion.run(*side, form::kForward)); // away from the end
        clock.advance(1000);
        EXPECT_TRUE(side->running());
        side->sngPos = 998.8F;
        motion.run(*side, form::kBackward);
        clock.advance(1000);
        EXPECT_FALSE(side->running());
        EXPECT_LT(side->sngPos, 999.1F);
        motion.run(*side, form::kForward);
        side->sngPos = -999;
        clock.advance(10);
        EXPECT_FALSE(side->running());
        EXPECT_EQ(side->sngPos, -999);
    }
}

TEST_F(CommandsTest, InSatelliteRotorATargetMayMoveOn) {
    form.intFunzione = form::kSatelliteRotor;
    for (const engine::Side* side : {&a, &b}) {
        side->sngMMGiro = 50;
        side->sngPosRotor = 10;
        EXPECT_TRUE(motion.moveTo(*side, 11));
        clock.advance(20);
        motion.moveTo(*side, 12); // further on: no stop
        clock.advance(59);
        EXPECT_TRUE(side->forward.Enabled);
        clock.advance(1);
        EXPECT_FALSE(side->running());
        EXPECT_EQ(side->sngPosRotor, 12);

        const form::Int16 lastWritten = side->intUltFase;
        motion.moveTo(*side, 20);
        clock.advance(10);
        EXPECT_NE(side->intUltFase, lastWritten);
        motion.moveTo(*side, 12); // behind: back to the phase before, so that no step is lost
        clock.advance(20);        // the index wraps, which costs a tick
        EXPECT_FALSE(side->running());
        EXPECT_EQ(side->intUltFase, lastWritten);

        motion.moveTo(*side, 20);
        motion.moveTo(*side, 12); // where it stands
        EXPECT_FALSE(side->running());
        motion.moveTo(*side, 13);
        motion.run(*side, form::kForward); // on its own
        clock.advance(1000);
        EXPECT_TRUE(side->running());
        motion.stop(*side);
        EXPECT_EQ(side->sngPos, 0);
    }
}

TEST_F(CommandsTest, WithoutAPeriodTheOtherSpeedIsTaken) {
    struct Case {
        int fast, slow;
        bool chooseFast;
        int interval;
        bool isFast;
        const char* notice;
    };
    const Case cases[] = {{5, 10, true, 5, true, ""},
                          {0, 10, true, 10, false, "Engine 1 has no fast speed: it runs at the other one"},
                          {-200, 10, true, 10, false, "Engine 1 has no fast speed: it runs at the other one"},
                          {5, 0, false, 5, true, "Engine 1 has no slow speed: it runs at the other one"}};
    for (const Case& c : cases) {
        a.intTickAlta = c.fast;
        a.intTickBassa = c.slow;
        form.Timer1.Interval = 0;
        form.notice.Caption = "";
        form.cmdAv.Click.fire();
        EXPECT_GT(form.Timer1.Interval.get(), 0);
        (c.chooseFast ? form.cmdAlta : form.cmdBassa).Click.fire();
        EXPECT_EQ(form.Timer1.Interval, c.interval);
        EXPECT_EQ(a.bolVelAlta, c.isFast);
        EXPECT_EQ((c.isFast ? form.cmdAlta : form.cmdBassa).BackColor, form::kRed);
        EXPECT_EQ(form.notice.Caption, c.notice);
        a.intTickAlta = a.intTickBassa = 0; // entered while it runs: it goes on as it does
        form.cmdAlta.Click.fire();
        EXPECT_EQ(form.Timer1.Interval, c.interval);
        motion.stop(a);
    }
}

TEST_F(CommandsTest, WhatCannotMoveDoesNotStartAndSaysWhatIsMissing) {
    const std::tuple<std::function<void()>, const char*> cases[] = {
        {[this] { b.sngMMGiro = 0; }, "Engine 2 does not start: enter its units/r"},
        {[this] { b.intSteps = 0; }, "Engine 2 does not start: enter its steps/r"},
        {[this] { b.intTickAlta = b.intTickBassa = 0; },
         "Engine 2 does not start: enter its slow or fast speed"},
        {[this] { motion.notReady = [] { return std::string("Arduino ttyACM0 is starting"); }; },
         "Engine 2 does not start: Arduino ttyACM0 is starting"}};
    for (const auto& [spoil, reason] : cases) {
        SetUp();
        spoil();
        for (const auto& begin : std::initializer_list<std::function<void()>>{
                 [this] { form.cmdAvB.Click.fire(); }, [this] { form.cmdBIndMan.MouseDown.fire(); },
                 [this] { EXPECT_FALSE(motion.moveTo(b, 5)); }}) {
            begin();
            EXPECT_EQ(form.notice.Caption, reason);
            EXPECT_FALSE(b.running() || b.bolMem);
            EXPECT_TRUE(form.cmdOff.Enabled);
            EXPECT_EQ(form.lblUsoB.Caption, "");
            clock.advance(form::Notice::kMilliseconds - 1);
            EXPECT_EQ(form.notice.Caption, reason);
            form.notice.tell("newer");
            clock.advance(form::Notice::kMilliseconds - 1);
            EXPECT_EQ(form.notice.Caption, "newer");
            clock.advance(1);
            EXPECT_EQ(form.notice.Caption, "");
        }
        EXPECT_TRUE(motion.moveTo(b, 0)); // there already
    }
}

TEST_F(CommandsTest, OnlyAPressOfStopIsTheUsers) {
    int presses = 0;
    motion.onUserStop = [&] {
        EXPECT_TRUE(form.cmdOff.Enabled);
        ++presses;
    };
    form.cmdAvMan.MouseDown.fire();
    form.cmdAvMan.MouseUp.fire();
    motion.moveTo(a, 1);
    clock.advance(1000);
    motion.run(a, form::kForward);
    motion.stopBoth();
    EXPECT_EQ(presses, 0);
    motion.run(a, form::kForward);
    form.cmdAlt.Click.fire();
    form.cmdAltB.Click.fire();
    EXPECT_EQ(presses, 2);
}

} // namespace
