#include "tests/desk.h"

namespace {

class OutputsOffTest : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        f().hScrCmdOff.userScroll(2);
        f().chkAutoCmdOff.userClick();
    }
    /// Puts a coil on, as a move does that has just ended.
    void leaveACoilOn() { port.clearBit(0); }
};

TEST_F(OutputsOffTest, SwitchesOffAfterTheDelayAndNotWhileAnEngineRuns) {
    EXPECT_EQ(file.read().integer(42), 2);
    EXPECT_EQ(f().lblAutoCmdOff.Caption, "2");
    leaveACoilOn();
    clock.advance(2499); // armed at 500
    EXPECT_NE(port.data(), 255);
    clock.advance(1);
    EXPECT_EQ(port.data(), 255);

    f().cmdAvB.Click.fire();
    clock.advance(5000);
    EXPECT_FALSE(f().tmrAutoOff.Enabled);
    EXPECT_NE(port.data(), 255);
    f().cmdAltB.Click.fire();
    clock.advance(2500);
    EXPECT_EQ(port.data(), 255);
    f().chkAutoCmdOff.userClick();
    clock.advance(2500); // a countdown that has begun runs to its end
    leaveACoilOn();
    clock.advance(10000);
    EXPECT_NE(port.data(), 255);
}

TEST_F(OutputsOffTest, AnEngineThatStartsJustBeforeTheEndKeepsItsCoils) {
    clock.advance(2400);
    f().cmdAv.Click.fire();
    leaveACoilOn();
    clock.advance(100);
    EXPECT_NE(port.data(), 255);
}

TEST_F(OutputsOffTest, APortThatIsGoneIsToldOnceAndNotAtEachCountdown) {
    port.breakDown("/dev/parport0: gone");
    clock.advance(60000);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].text.find("could NOT be switched off"), std::string::npos);
    port.breakDown("");
    f().cmdAv.Click.fire();
    clock.advance(1000);
    f().cmdAlt.Click.fire();
    clock.advance(3000);
    EXPECT_EQ(port.data(), 255);
}

TEST_F(OutputsOffTest, TheTickAfterItFiredOnlySwitchesOffOnceMore) {
    storeMemory(1, 30, 30, "14.020");
    connectN1mm();
    f().chkAutoMemOnOff.userClick();
    f().sngPosA = f().sngPosB = 0;
    while (!f().bolAutoOffFire)
        clock.advance(1);
    leaveACoilOn();
    tune(1402500);
    poll();
    EXPECT_EQ(port.data(), 255);
    EXPECT_FALSE(f().bolAutoOffFire);
    EXPECT_FALSE(f().Timer1.Enabled); // it neither read nor recalled
    poll();
    EXPECT_TRUE(f().Timer1.Enabled);

    f().bolAutoOffFire = true; // an engine that has started since keeps its coils
    clock.advance(form::Form1::kPollMilliseconds);
    EXPECT_NE(port.data(), 255);
    EXPECT_FALSE(f().bolAutoOffFire);
}

TEST_F(OutputsOffTest, ADelayThatWasNeverSetShowsAs0UntilTheBoxIsTicked) {
    file.write({config::integerRecord(config::record::kAutoOffSeconds, 0)});
    start();
    EXPECT_EQ(f().lblAutoCmdOff.Caption, "0");
    EXPECT_EQ(f().tmrAutoOff.Interval, 0);
    f().chkAutoCmdOff.userClick();
    EXPECT_EQ(f().hScrCmdOff.Value, 8);
    EXPECT_EQ(f().lblAutoCmdOff.Caption, "8");
    EXPECT_EQ(file.read().integer(42), 8);
    leaveACoilOn();
    clock.advance(8500);
    EXPECT_EQ(port.data(), 255);
    f().hScrCmdOff.userScroll(3);
    f().chkAutoCmdOff.userClick();
    f().chkAutoCmdOff.userClick();
    EXPECT_EQ(f().lblAutoCmdOff.Caption, "3");
    start(); // record 42 holds what was set
    EXPECT_EQ(f().lblAutoCmdOff.Caption, "3");
}

TEST_F(OutputsOffTest, SatelliteRotorKeepsItsOutputs) {
    f().mnuSat.Click.fire();
    leaveACoilOn();
    clock.advance(10000);
    EXPECT_NE(port.data(), 255);
}

TEST_F(OutputsOffTest, FastStoreKeepsThePositionsOfTheSelectedMemoryOnce) {
    storeMemory(2, 1, 1, "14.020 cw");
    connectN1mm();
    tune(1402500);
    f().chkFastMemory.userClick();
    clock.advance(5000);
    EXPECT_TRUE(sound.played.empty()); // no memory is selected
    f().Option[2].Value.load(true);
    f().sngPosA = 12.35F;
    clock.advance(5000);
    EXPECT_EQ(sound.played, std::vector<std::string>{"memup.wav"});
    f().bolAutoOffFire = false; // an engine has run meanwhile
    f().shpCoils.FillColor = form::kRed;
    clock.advance(10000);
    EXPECT_EQ(sound.played.size(), 2U) << "once for each time that the outputs go off";
    EXPECT_EQ(f().Option[2].ToolTip, "14.020 (012.35-001.00)");
    auto records = file.read();
    EXPECT_EQ(records.text(2), "012.35");
    EXPECT_EQ(records.text(72), "001.00");
    EXPECT_EQ(records.text(22), "14.020 cw");
    f().chkAutoMemOnOff.userClick(); // automatic recall on: nothing is stored
    f().lblUsoA.Caption = f().lblUsoB.Caption = "14.020";
    f().sngPosA = 2;
    clock.advance(10000);
    EXPECT_EQ(f().strMemPosA(2), "012.35");
}

} // namespace
