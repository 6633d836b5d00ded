#include "rotor/rotor.h"
#include "rotor/tracking_data.h"
#include "tests/desk.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Satellite Rotor with a tracking server: 0.125 degrees a step, slow 12.5 and fast 62.5 degrees per second,
/// both axes.
class RotorTest : public Desk {
  protected:
    void SetUp() override {
        namespace record = config::record;
        file.write({config::integerRecord(record::kStepsA, 400), config::singleRecord(record::kUnitsA, 50),
                    config::integerRecord(record::kStepsB, 400), config::singleRecord(record::kUnitsB, 50),
                    config::integerRecord(record::kFastA, 500), config::integerRecord(record::kSlowA, 100),
                    config::integerRecord(record::kFastB, 500), config::integerRecord(record::kSlowB, 100),
                    config::integerRecord(record::kTrackingProgram, rotor::kSatPc32),
                    config::integerRecord(record::kFunction, form::kSatelliteRotor)});
        tcp.listen(6969);
        start();
        tcp.answer();
        clock.advance(500);
    }
    void restart() {
        start();
        tcp.answer();
        clock.advance(500);
    }
    void send(double azimuth, double elevation) {
        tcp.send("AO-7 0 0 " + std::to_string(azimuth) + " " + std::to_string(elevation) + "\n");
    }
    void follow() { f().chkRotOnOff.userClick(); }
    bool runs() {
        return f().Timer1.Enabled || f().Timer2.Enabled || f().Timer3.Enabled || f().Timer4.Enabled;
    }
    void settle(int seconds = 30) {
        for (int n = 0; n < seconds * 5 && (n < 2 || runs()); ++n)
            clock.advance(200);
    }
    void expectAt(double azimuth, double elevation, double within = 0.13) {
        EXPECT_NEAR(f().sngPosAz, azimuth, within);
        EXPECT_NEAR(f().sngPosEl, elevation, within);
    }
    void standAt(float azimuth, float elevation) {
        f().sngPosAz = azimuth;
        f().sngPosEl = elevation;
    }
    void use(const std::string& name, const std::string& text) { settings.sections["rotor"][name] = text; }
};

TEST_F(RotorTest, FollowsWholeTargetsAndStopsOnThem) {
    EXPECT_TRUE(f().chkRotOnOff.Enabled);
    send(20, 10);
    settle();
    expectAt(0, 0); // Follow is not ticked
    follow();
    settle();
    expectAt(20, 10);
    EXPECT_GE(f().sngPosAz, 19.999F);
    EXPECT_EQ(f().lblSource.Caption, "Target: tracking server");
    tcp.send("AO-7 0 0 200 "); // half a line
    tcp.send("x\nAO-7 0 0 21");
    clock.advance(50);
    EXPECT_FALSE(runs());
    tcp.send(" 11\n");
    EXPECT_TRUE(runs()); // at once, without waiting for the refresh
    settle();
    expectAt(21, 11);
    EXPECT_TRUE(f().chkRotOnOff.ticked());
}

TEST_F(RotorTest, ThresholdsDecideWhetherAndHowFast) {
    f().HScroll6.set(20); // 2 degrees
    f().HScroll5.set(20);
    f().HScroll3.set(10); // 1 degree
    f().HScroll2.set(5);
    follow();
    send(30, 10);
    EXPECT_EQ(f().Timer1.Interval, 2);
    settle();
    send(31.9, 11.9);
    settle(2);
    expectAt(30, 10);
    send(32.1, 8); // elevation: 2 degrees back are not enough
    EXPECT_EQ(f().Timer1.Interval, 10);
    settle();
    expectAt(32.1, 10);
    send(32.1, 7);
    settle();
    expectAt(32.1, 7);
}

TEST_F(RotorTest, TheUserHasTheSay) {
    follow();
    send(100, 40);
    clock.advance(300);
    f().cmdAvMan.MouseDown.fire(); // refused
    f().cmdAvMan.MouseUp.fire();
    EXPECT_TRUE(f().Timer1.Enabled);
    f().notice.tell("");
    f().cmdInd.Click.fire(); // refused too
    EXPECT_TRUE(f().Timer1.Enabled);
    EXPECT_NE(f().notice.Caption.get().find("follows"), std::string::npos);
    f().cmdAltB.Click.fire(); // either Stop
    EXPECT_FALSE(runs());
    EXPECT_FALSE(f().chkRotOnOff.ticked());
    send(120, 50);
    settle(2);
    EXPECT_FALSE(runs());
    // A jog that is released stops with the next refresh; Run runs on.
    f().cmdAvMan.MouseDown.fire();
    clock.advance(1000);
    f().cmdAvMan.MouseUp.fire();
    EXPECT_TRUE(runs());
    clock.advance(200);
    EXPECT_FALSE(runs());
    f().cmdAv.Click.fire();
    clock.advance(1000);
    EXPECT_TRUE(f().Timer1.Enabled);
    // A Stop stops both engines, also those that the user runs.
    f().cmdAvB.Click.fire();
    f().cmdAlt.Click.fire();
    EXPECT_FALSE(runs());
    // An error stops following too.
    follow();
    port.breakDown("no port");
    send(10, 10);
    clock.advance(100);
    EXPECT_FALSE(f().chkRotOnOff.ticked());
    EXPECT_FALSE(runs());
}

TEST_F(RotorTest, ASilentSourceLeavesTheAntennaWhereItIs) {
    follow();
    send(30, 10);
    settle();
    clock.advance(9000);
    send(100, 40);
    clock.advance(500);
    EXPECT_TRUE(runs());
    clock.advance(600);
    const float azimuth = f().sngPosAz;
    EXPECT_GT(azimuth, 30);
    clock.advance(10'000);
    EXPECT_EQ(f().lblSource.Caption, "Target lost");
    EXPECT_FALSE(runs());
    EXPECT_TRUE(f().chkRotOnOff.ticked());
    expectAt(100, 40);
    send(110, 41);
    EXPECT_TRUE(runs());
    EXPECT_EQ(f().lblSource.Caption, "Target lost"); // until the next refresh
    clock.advance(200);
    EXPECT_EQ(f().lblSource.Caption, "Target: tracking server");
}

TEST_F(RotorTest, AnOpenLinkIsNotSilentAndTheFirstSourceHoldsTheTarget) {
    const char* const program = "SatPC32|SatPcDdeConv";
    links.run(program);
    f().intSatSource = rotor::kOrbitron;
    links.run("Orbitron|Tracking");
    f().cmdConnect.Click.fire();
    links.poke("Orbitron|Tracking", "TrackingData", "ISS AZ10 EL20");
    f().chkOpenCom.userClick();
    clock.advance(200);
    EXPECT_TRUE(f().chkRotOnOff.Enabled);
    follow();
    clock.advance(60'000);
    links.poke(program, "SatPcDdeItem", "SNISS AZ90 EL50 UP0");
    settle();
    expectAt(10, 20);
    EXPECT_EQ(f().lblSource.Caption, "Target: Orbitron");
    EXPECT_EQ(f().plan.target, (form::Direction{10, 20})); // not what has come last
    links.quit("Orbitron|Tracking");                       // by itself: following goes on with the other one
    clock.advance(200);
    EXPECT_EQ(f().lblSource.Caption, "Target lost");
    EXPECT_FALSE(f().plan.target);
    links.poke(program, "SatPcDdeItem", "SNISS AZ91 EL50 UP0");
    settle();
    expectAt(91, 50);
    f().chkOpenCom.userClick();
    clock.advance(200);
    EXPECT_EQ(f().lblSource.Caption, "");
    EXPECT_FALSE(f().chkRotOnOff.ticked());
    EXPECT_FALSE(f().chkRotOnOff.Enabled);
}

TEST_F(RotorTest, WithARampATargetBehindIsComeBackToOnce) {
    f().HScroll1.set(20);
    f().HScroll6.set(10);
    follow();
    send(80, 10);
    clock.advance(1000); // fast: 15 degrees to brake
    const float turned = f().sngPosAz;
    send(turned - 5.0, 10);
    float furthest = turned;
    int turns = 0;
    for (bool down = false; runs();) {
        clock.advance(20);
        furthest = std::max(furthest, f().sngPosAz);
        if (f().Timer2.Enabled != std::exchange(down, f().Timer2.Enabled)) ++turns;
    }
    EXPECT_NEAR(furthest, turned + 15, 1);
    EXPECT_NEAR(f().sngPosAz, turned - 5, 0.13);
    EXPECT_EQ(turns, 2); // down once, and at rest
}

TEST_F(RotorTest, TheRangesHoldForEveryMotion) {
    use("azimuth", "-20..200");
    use("elevation", "10..60");
    restart();
    struct Case {
        form::Button& run;
        float& position;
        float end;
    };
    for (const Case& each : {Case{f().cmdInd, f().sngPosAz, -20}, Case{f().cmdAv, f().sngPosAz, 200},
                             Case{f().cmdAvB, f().sngPosEl, 60}, Case{f().cmdIndB, f().sngPosEl, 10}}) {
        f().cmdAlta.Click.fire();
        each.run.Click.fire();
        settle(60);
        EXPECT_EQ(each.position, each.end); // a whole number of steps
        each.run.Click.fire();              // at the end: not one step further
        const float stood = each.position;
        settle(1);
        EXPECT_EQ(each.position, stood);
    }
    // A step that would leave the range is not made.
    standAt(199.95F, 10.05F);
    f().cmdAv.Click.fire();
    f().cmdIndB.Click.fire();
    settle(1);
    expectAt(199.95, 10.05, 1e-4);
    // Outside the range, only the way back in is open.
    standAt(300, 0);
    f().cmdAv.Click.fire();
    f().cmdAvB.Click.fire();
    clock.advance(1000);
    EXPECT_EQ(f().sngPosAz, 300);
    EXPECT_GT(f().sngPosEl, 0);
    f().cmdInd.Click.fire();
    clock.advance(1000);
    EXPECT_LT(f().sngPosAz, 300);
}

TEST_F(RotorTest, ParksPointsAndCalibrates) {
    use("park", "90,5");
    restart();
    f().cmdPark.Click.fire();
    settle();
    expectAt(90, 5);
    clock.advance(400);
    EXPECT_EQ(port.data(), 0xFF); // the coils rest
    EXPECT_EQ(f().lblRotorState.Caption, "Parked");
    f().txtPointAz.Text = "350,5";
    f().txtPointEl.Text = "20";
    f().txtPointEl.KeyDown.fire(form::TextBox::kEnter);
    clock.advance(400);
    EXPECT_TRUE(f().plan.goal);
    settle();
    expectAt(350.5, 20);
    f().txtPointAz.Text = "north";
    f().cmdPoint.Click.fire();
    EXPECT_FALSE(runs());
    EXPECT_NE(f().notice.Caption, "");
    f().txtPointEl.Text = "-30";
    f().txtPointAz.Text = "100";
    f().cmdPoint.Click.fire();
    EXPECT_FALSE(runs());
    EXPECT_EQ(f().notice.Caption, "This direction is outside the range of the rotator");
    // The user's own motion takes the antenna away from its way.
    f().cmdPark.Click.fire();
    clock.advance(400);
    f().cmdAv.Click.fire();
    clock.advance(400);
    EXPECT_TRUE(f().Timer1.Enabled);
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();

    standAt(350, 20);
    send(352.5, 21);
    f().cmdCalibrate.Click.fire();
    expectAt(352.5, 21, 0.01);
    EXPECT_EQ(f().lblAzimut.Caption, "352.50");
    f().cmdUndoCalibrate.Click.fire();
    expectAt(350, 20, 0.01);
    EXPECT_FALSE(f().cmdUndoCalibrate.Enabled);
}

TEST_F(RotorTest, AGoalStaysInTheRangeAndGivesWayToATap) {
    const auto park = [this](const char* range, const char* place) {
        inDialog<form::FrmRotator>([&](form::FrmRotator& dialog) {
            dialog.txtAzimuth.Text = range;
            dialog.txtPark.Text = place;
            dialog.cmdSaveRotator.Click.fire();
        });
        f().mnuRotator.Click.fire();
    };
    f().cmdPark.Click.fire();
    clock.advance(400);
    park("0..100", "50,0");
    settle();
    clock.advance(400);
    expectAt(100, 0);
    EXPECT_EQ(f().lblRotorState.Caption, "Parked");
    f().cmdPark.Click.fire();
    clock.advance(450);
    f().cmdIndMan.MouseDown.fire();
    clock.advance(50);
    f().cmdIndMan.MouseUp.fire();
    settle(2);
    EXPECT_FALSE(runs());
    EXPECT_GT(f().sngPosAz, 52); // short of the 50 where it was to park
}

TEST_F(RotorTest, AnAxisThatCannotStartIsNamedOnceAndKeepsNothingWaiting) {
    const auto says = [this](const char* words) {
        return f().notice.Caption.get().find(words) != std::string::npos;
    };
    f().intTickAltaB = f().intTickBassaB = 0;
    follow();
    send(30, 20);
    EXPECT_TRUE(says("Elevation does not start: enter its slow or fast speed"));
    f().notice.tell("read me");
    clock.advance(1000);
    EXPECT_EQ(f().notice.Caption, "read me");
    settle();
    expectAt(30, 0);
    EXPECT_EQ(f().lblRotorState.Caption, "Elevation does not start");
    follow(); // no longer
    f().txtPointAz.Text = "50";
    f().txtPointEl.Text = "10";
    f().cmdPoint.Click.fire();
    EXPECT_TRUE(says("Elevation"));
    settle();
    clock.advance(400);
    expectAt(50, 0);
    EXPECT_FALSE(f().plan.goal);
    // Nor does an output that is not ready yet.
    port.setStarting("the board is starting");
    f().intTickAltaB = f().intTickBassaB = 10;
    send(50, 20);
    follow();
    EXPECT_TRUE(says("the board is starting"));
    f().notice.tell("read me");
    clock.advance(1000);
    EXPECT_EQ(f().notice.Caption, "read me");
    port.setStarting("");
    clock.advance(1000);
    EXPECT_GT(f().sngPosEl, 1);
    follow(); // no longer
    standAt(50, 0);
    f().intTickAltaB = f().intTickBassaB = 0;
    // One speed is enough, and no news at each look.
    f().intTickAltaB = 10;
    send(50, 20);
    f().notice.tell("read me");
    follow();
    clock.advance(1000);
    EXPECT_GT(f().sngPosEl, 1);
    EXPECT_EQ(f().notice.Caption, "read me");
}

TEST_F(RotorTest, ALineWithoutNumbersIsNoSilence) {
    follow();
    send(30, 10);
    for (int n = 0; n < 4; ++n) {
        clock.advance(5000);
        tcp.send("SAT 0 0 --- ---\n");
    }
    EXPECT_EQ(f().lblSource.Caption, "Target: tracking server");
}

TEST_F(RotorTest, CoilsRestOnceBothAxesHaveStood) {
    f().hScrCmdOff.set(5);
    f().chkAutoCmdOff.userClick();
    follow();
    send(10, 10);
    settle();
    EXPECT_NE(port.data(), 0xFF);
    clock.advance(5200);
    EXPECT_EQ(port.data(), 0xFF);
    send(11, 11);
    clock.advance(100);
    EXPECT_NE(port.data(), 0xFF);
    settle();
    follow(); // no longer
    // The user's own motion counts as well, also one that is over before the next look.
    f().cmdAv.Click.fire();
    clock.advance(50);
    f().cmdAlt.Click.fire();
    EXPECT_NE(port.data(), 0xFF);
    clock.advance(5400);
    EXPECT_EQ(port.data(), 0xFF);

    use("hold-elevation", "yes");
    restart();
    f().chkAutoCmdOff.userClick();
    follow();
    send(20, 20);
    settle();
    clock.advance(5200);
    EXPECT_EQ(port.data() & 0x0F, 0x0F);
    EXPECT_NE(port.data() & 0xF0, 0xF0);
    EXPECT_NE(f().lblRotorState.Caption.get().find("gets hot"), std::string::npos);
}

TEST_F(RotorTest, ParksAfterAPassWhereThatIsWanted) {
    use("park-after-pass", "yes");
    use("park", "100,0");
    restart();
    follow();
    for (const double elevation : {6.0, 3.0, -1.0, -4.0, -6.0}) {
        send(20, elevation);
        settle();
    }
    expectAt(100, 0);
    EXPECT_TRUE(f().chkRotOnOff.ticked());
    send(21, -4); // the next pass
    settle();
    expectAt(21, 0);
    // A target that jitters where following ends does not keep it from parking.
    for (const double elevation : {6.0, 1.0, -4.9, -5.05, -4.98, -5.03, -4.95, -5.2, -5.6}) {
        send(20, elevation);
        clock.advance(1000);
    }
    for (int n = 0; n < 20; ++n) {
        send(20, n % 2 == 0 ? -5.45 : -5.6);
        clock.advance(1000);
    }
    expectAt(100, 0);
}

TEST_F(RotorTest, InvalidSettingsAreNamedAndTheDialogRefusesThem) {
    use("azimuth", "10..20");
    use("silence", "0");
    use("follow-from", "-10");
    restart();
    const std::string told = dialogs.takeMessages().at(0).text;
    EXPECT_NE(told.find("azimuth"), std::string::npos);
    EXPECT_NE(told.find("silence"), std::string::npos);
    inDialog<form::FrmRotator>([this](form::FrmRotator& dialog) {
        EXPECT_EQ(dialog.txtAzimuth.Text, "0..360");
        EXPECT_EQ(dialog.txtFollowFrom.Text, "-10");
        dialog.txtElevation.Text = "0..200";
        dialog.cmdSaveRotator.Click.fire();
        EXPECT_NE(dialog.lblRotatorError.Caption, "");
        dialog.txtElevation.Text = "10..180";
        dialog.cmdSaveRotator.Click.fire();
        EXPECT_EQ(dialog.lblRotatorError.Caption, "The parking place lies outside the range");
        dialog.txtPark.Text = "180,45";
        dialog.chkHoldElevation.Value = 1;
        dialog.cmdSaveRotator.Click.fire();
    });
    f().mnuRotator.Click.fire();
    EXPECT_EQ(settings.sections["rotor"]["elevation"], "10..180");
    EXPECT_EQ(settings.sections["rotor"]["hold-elevation"], "yes");
    EXPECT_EQ(settings.sections["rotor"]["silence"], "10");
}

} // namespace
