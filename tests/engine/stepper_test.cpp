#include "tests/desk.h"

#include <map>
#include <numeric>

namespace {

using Accesses = std::vector<simulated::PrinterPort::Access>;

/// An engine as the tests see it: its controls and fields under common names.
struct Engine {
    form::Timer& forward;
    form::Timer& backward;
    form::Int16& dir;
    form::Int16& phase;
    form::Int16& halfPhase;
    float& position;
    form::CheckBox& halfStep;
    std::vector<form::Shape*> lamps;
    int firstOutput;
    int usbFactor;
};

class StepperTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }

    Engine a() {
        return {f().Timer1,
                f().Timer2,
                f().intDirA,
                f().intFaseA,
                f().intFaseHalfA,
                f().sngPosA,
                f().chkHalfStep,
                {&f().out1, &f().out2, &f().out3, &f().out4},
                1,
                1};
    }
    Engine b() {
        return {f().Timer4,
                f().Timer3,
                f().intDirB,
                f().intFaseB,
                f().intFaseHalfB,
                f().sngPosB,
                f().chkHalfStepB,
                {&f().out1B, &f().out2B, &f().out3B, &f().out4B},
                5,
                16};
    }

    /// Four data bits of the engine after one tick, as text D3..D0, with the order of the writes before it.
    std::string tick(const Engine& engine, int direction) {
        engine.dir = direction;
        return bareTick(engine, direction);
    }
    std::string bareTick(const Engine& engine, int direction) {
        port.takeAccesses();
        (direction == form::kForward ? engine.forward : engine.backward).Tick.raise();
        std::string text;
        for (const auto& access : port.takeAccesses()) {
            text += std::to_string(access.output - engine.firstOutput + 1);
        }
        if (text.empty()) return "silent";
        const int nibble = port.data() >> (engine.firstOutput - 1) & 15;
        text += ' ';
        for (int bit = 3; bit >= 0; --bit)
            text += (nibble >> bit & 1) ? '1' : '0';
        return text;
    }
    static int litLamp(const Engine& engine) {
        int lit = 0;
        for (std::size_t i = 0; i < engine.lamps.size(); ++i) {
            if (engine.lamps[i]->FillColor == form::kRed) lit = lit * 10 + static_cast<int>(i) + 1;
        }
        return lit;
    }
};

const std::vector<std::string> kFullStep = {"1234 1100", "2134 1001", "3214 0011", "4231 0110"};
const std::vector<std::string> kHalfStep = {"1234 1110", "2134 1100", "3214 1101", "4231 1001",
                                            "1234 1011", "2134 0011", "3214 0111", "4231 0110"};

TEST_F(StepperTest, BothEnginesWriteTheirSequencesForwardAndBackward) {
    for (const Engine& engine : {a(), b()}) {
        f().chkUsbOn.Value = 1;
        const std::vector<int> fullUsb = {8, 4, 2, 1};
        const std::vector<int> halfUsb = {9, 8, 12, 4, 6, 2, 3, 1};
        for (std::size_t i = 0; i < 8; ++i) {
            EXPECT_EQ(tick(engine, form::kForward), kFullStep[i % 4]);
            EXPECT_EQ(litLamp(engine), static_cast<int>(i % 4) + 1);
            EXPECT_EQ(board.outputs() & (15 * engine.usbFactor), fullUsb[i % 4] * engine.usbFactor);
        }
        // From index 1 backward: 1, 4, 3, 2, 1.
        for (const std::size_t phase : {0U, 3U, 2U, 1U, 0U}) {
            EXPECT_EQ(tick(engine, form::kBackward), kFullStep[phase]);
        }
        engine.halfStep.Value = 1;
        EXPECT_EQ(tick(engine, form::kForward), "silent"); // no start value: index 0
        for (std::size_t i = 0; i < 9; ++i) {
            EXPECT_EQ(tick(engine, form::kForward), kHalfStep[i % 8]);
            EXPECT_EQ(litLamp(engine), static_cast<int>(i % 4) + 1);
            EXPECT_EQ(board.outputs() & (15 * engine.usbFactor), halfUsb[i % 8] * engine.usbFactor);
        }
        EXPECT_EQ(tick(engine, form::kBackward), kHalfStep[1]);
        EXPECT_EQ(tick(engine, form::kBackward), kHalfStep[0]);
        EXPECT_EQ(tick(engine, form::kBackward), kHalfStep[7]);
    }
}

TEST_F(StepperTest, EveryStepIsOnePatternAndWaitsForTheOutputsOfItsEngine) {
    const int before = port.patterns();
    tick(a(), form::kForward);
    tick(b(), form::kForward);
    EXPECT_EQ(port.patterns(), before + 2);

    const float position = f().sngPosA;
    port.holdBack(0b0000'0100);
    EXPECT_EQ(tick(a(), form::kForward), "silent");
    EXPECT_EQ(f().sngPosA, position);
    EXPECT_EQ(tick(b(), form::kForward), kFullStep[1]);
    port.holdBack(0);
    EXPECT_EQ(tick(a(), form::kForward), kFullStep[1]);
    const int afterSteps = port.patterns();
    f().cmdOff.Click.raise();
    EXPECT_EQ(port.patterns(), afterSteps + 1);
}

TEST_F(StepperTest, AnArduinoThatIsTooSlowIsNamedWithTheRateThatIsLeft) {
    f().cmdAv.Click.fire();
    const auto left = [&](int share) { // of 100 steps/s
        for (int tenth = 0; tenth < 20; ++tenth) {
            port.holdBack(0xF);
            clock.advance(100 - share);
            port.holdBack(0);
            clock.advance(share);
        }
        return f().rateNotice.Caption.get();
    };
    EXPECT_EQ(left(100), "");
    EXPECT_EQ(left(50), "Engine 1: 50 of 100 steps/s (Arduino)");
    EXPECT_EQ(left(100), "");
}

TEST_F(StepperTest, ReversalWithoutARunCommandWritesTheNextPhaseFirst) {
    const Engine engine = a();
    tick(engine, form::kForward);
    tick(engine, form::kForward);
    EXPECT_EQ(tick(engine, form::kBackward), kFullStep[2]);
    EXPECT_EQ(tick(engine, form::kBackward), kFullStep[1]);
    EXPECT_EQ(tick(engine, form::kBackward), kFullStep[0]);
    EXPECT_EQ(tick(engine, form::kBackward), kFullStep[3]);
}

TEST_F(StepperTest, AMismatchedDirectionMovesTheSequenceNotTheEngine) {
    for (const Engine& engine : {a(), b()}) {
        const auto before = f().lngContaStep.value();
        engine.dir = 0;
        EXPECT_EQ(bareTick(engine, form::kForward), "silent");
        EXPECT_EQ(bareTick(engine, form::kBackward), "silent");
        EXPECT_EQ(bareTick(engine, form::kBackward), "silent");
        EXPECT_EQ(engine.phase, 4);
        EXPECT_EQ(engine.position, 0);
        EXPECT_EQ(f().lngContaStep.value(), before + 3); // counts up whatever the direction
    }
}

TEST_F(StepperTest, IndexesOutsideTheTableCostOneSilentTick) {
    const Engine engine = a();
    const std::tuple<int, int, int> cases[] = {
        {form::kForward, 5, 1}, {form::kForward, 0, 1}, {form::kBackward, 0, 4}, {form::kBackward, 5, 4}};
    for (const auto& [direction, from, to] : cases) {
        engine.phase = from;
        EXPECT_EQ(tick(engine, direction), "silent");
        EXPECT_EQ(engine.phase, to);
        EXPECT_EQ(engine.position, 0);
    }
    f().chkHalfStep.Value = 1;
    engine.halfPhase = 0;
    EXPECT_EQ(tick(engine, form::kBackward), "silent");
    EXPECT_EQ(engine.halfPhase, 8);
}

TEST_F(StepperTest, StepModesKeepTheirOwnIndexAndWarn) {
    const Engine engine = a();
    tick(engine, form::kForward);
    f().chkHalfStep.userClick();
    EXPECT_EQ(dialogs.takeMessages(), (std::vector<simulated::Dialogs::Message>{
                                          {"Please be sure to Reset stepper position to have correct measure",
                                           "Stepper resetted?", true}}));
    EXPECT_EQ(f().chkHalfStep.Caption, "Half Step");
    EXPECT_EQ(f().bytMoltA, 2);
    tick(engine, form::kForward);
    EXPECT_EQ(tick(engine, form::kForward), kHalfStep[0]);
    f().chkHalfStep.userClick();
    EXPECT_EQ(f().chkHalfStep.Caption, "Full Step");
    EXPECT_EQ(tick(engine, form::kForward), kFullStep[1]);
}

TEST_F(StepperTest, PositionsMoveByOneStepsDistanceInSinglePrecision) {
    for (const Engine& engine : {a(), b()}) {
        float expected = 0;
        for (int i = 0; i < 100; ++i) {
            tick(engine, form::kForward);
            expected += 10.0F / 200;
        }
        EXPECT_EQ(engine.position, expected);
        engine.halfStep.Value = 1;
        engine.halfPhase = 1;
        tick(engine, form::kBackward);
        EXPECT_EQ(engine.position, expected - 10.0F / 400);
    }
    EXPECT_EQ(f().Label2.Caption, "4.98");
}

TEST_F(StepperTest, EndOfRunRoundsOnlyOnEngineA) {
    struct Case {
        bool engineB;
        int direction;
        float position;
        bool stepsFirst, runsOn;
    };
    const Case cases[] = {
        {false, form::kForward, 998.40F, true, true},    {false, form::kForward, 998.46F, true, false},
        {false, form::kForward, 998.5F, true, false},    {false, form::kForward, 998.6F, false, false},
        {false, form::kBackward, -998.40F, true, true},  {false, form::kBackward, -998.46F, true, false},
        {false, form::kBackward, -998.6F, false, false}, {true, form::kForward, 998.46F, true, true},
        {true, form::kForward, 998.6F, false, false},    {true, form::kBackward, -998.46F, true, true},
        {true, form::kBackward, -998.6F, false, false},
    };
    for (const Case& c : cases) {
        const Engine engine = c.engineB ? b() : a();
        form::Timer& timer = c.direction == form::kForward ? engine.forward : engine.backward;
        engine.position = c.position;
        timer.Enabled = true;
        EXPECT_EQ(tick(engine, c.direction) != "silent", c.stepsFirst) << c.engineB << c.position;
        EXPECT_EQ(timer.Enabled, c.runsOn) << c.engineB << c.position;
        timer.Enabled = false;
    }
}

TEST_F(StepperTest, RotorMovesDegreesAndOnlyEngineAIsFreeOfTheLimit) {
    settings.sections["rotor"]["elevation"] = "0..180";
    start();
    f().mnuSat.Click.fire();
    f().sngPosA = 2000;
    f().sngPosAz = 359.96F;
    f().Timer1.Enabled = true;
    EXPECT_NE(tick(a(), form::kForward), "silent");
    EXPECT_FALSE(f().Timer1.Enabled); // 360 reached
    EXPECT_EQ(f().lblAzimut.Caption, "360.01");
    EXPECT_EQ(f().sngPosA, 2000);

    f().sngPosEl = 179.96F;
    f().Timer4.Enabled = true;
    EXPECT_NE(tick(b(), form::kForward), "silent");
    EXPECT_FALSE(f().Timer4.Enabled); // 180 reached
    f().sngPosB = 999;
    f().sngPosEl = 10;
    EXPECT_EQ(tick(b(), form::kForward), "silent");
}

TEST_F(StepperTest, ErrorsInATickStopBothEnginesSwitchOffAndSayWhy) {
    const auto fails = [this](const std::function<void()>& spoil, const std::string& reason) {
        f().cmdAvB.Click.fire();
        f().cmdAv.Click.fire();
        spoil();
        clock.advance(10);
        EXPECT_FALSE(f().Timer1.Enabled);
        EXPECT_FALSE(f().Timer4.Enabled);
        EXPECT_TRUE(f().cmdOff.Enabled);
        EXPECT_EQ(litLamp(a()), 0);
        const auto messages = dialogs.takeMessages();
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_NE(messages[0].text.find(reason), std::string::npos) << messages[0].text;
        EXPECT_TRUE(messages[0].critical);
    };
    fails([this] { f().intStepsA = 0; }, "Division by zero");
    EXPECT_EQ(port.data(), 255);
    f().intStepsA = 20000;
    f().chkHalfStep.Value = 1;
    dialogs.takeMessages();
    f().intFaseHalfA = 1;
    fails([] {}, "Overflow");
    f().intStepsA = 200;
    fails([this] { f().lngContaStep = 2147483647; }, "Overflow");
    f().lngContaStep = 0;
    fails([this] { port.breakDown("/dev/parport0: gone"); }, "/dev/parport0: gone");
    port.breakDown("");
    f().cmdAv.Click.fire(); // and the program goes on
    clock.advance(10);
    EXPECT_TRUE(f().Timer1.Enabled);
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(StepperTest, UsbByteJoinsBothEnginesAndOffWritesZero) {
    f().cmdOff.Click.fire();
    EXPECT_EQ(port.takeAccesses(),
              (Accesses{{4, 1}, {2, 1}, {3, 1}, {1, 1}, {8, 1}, {6, 1}, {7, 1}, {5, 1}}));
    tick(a(), form::kForward);
    EXPECT_EQ(board.writes(), 0); // the box is not ticked
    EXPECT_EQ(f().intPesoA, 0);
    f().intPesoB = 64;
    f().chkUsbOn.userClick();
    f().intFaseA = 1;
    tick(a(), form::kForward);
    EXPECT_EQ(board.outputs(), 72);
    f().cmdOff.Click.fire();
    EXPECT_EQ(board.outputs(), 0);
    EXPECT_EQ(port.data(), 255);
    EXPECT_EQ(f().intFaseA, 2);
}

TEST_F(StepperTest, UsbBoxShowsWhatTheBoardAnswers) {
    EXPECT_EQ(f().chkUsbOn.BackColor, form::kGreen);
    const std::tuple<int, const char*, bool> answers[] = {{-1, "USB Card -1 not found", false},
                                                          {2, "USB Card 2 connected", true},
                                                          {5, "USB Card 0 disconnected", false}};
    for (const auto& [answer, text, on] : answers) {
        board.answerWith(answer);
        f().chkUsbOn.userClick();
        EXPECT_EQ(f().lblUsb.Caption, text);
        EXPECT_EQ(f().bolUsbOn, on);
        EXPECT_EQ(f().chkUsbOn.Caption, "USB On");
        EXPECT_EQ(f().chkUsbOn.BackColor, form::kRed);
        f().chkUsbOn.userClick();
        EXPECT_EQ(f().lblUsb.Caption, "USB Card 0 disconnected");
        EXPECT_EQ(f().chkUsbOn.Caption, "USB Off");
    }
    board.breakDown("no library");
    f().chkUsbOn.userClick();
    EXPECT_EQ(dialogs.takeMessages(),
              (std::vector<simulated::Dialogs::Message>{{"Cannot find USB driver!", "Error!", true}}));
    EXPECT_EQ(f().chkUsbOn.Value, 0);
}

} // namespace
