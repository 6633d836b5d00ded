#include "tests/desk.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

/// Satellite Rotor, 0.1 degrees a step on both axes, with clients that turn it.
class RotctldLink : public Desk {
  protected:
    using Peer = std::shared_ptr<simulated::TcpServers::Peer>;

    void SetUp() override {
        namespace record = config::record;
        file.write({config::integerRecord(record::kStepsA, 400), config::singleRecord(record::kUnitsA, 50),
                    config::integerRecord(record::kStepsB, 400), config::singleRecord(record::kUnitsB, 50),
                    config::integerRecord(record::kFastA, 500), config::integerRecord(record::kSlowA, 100),
                    config::integerRecord(record::kFastB, 500), config::integerRecord(record::kSlowB, 100),
                    config::integerRecord(record::kFunction, form::kSatelliteRotor)});
        start();
    }
    Peer connect() { return tcpServers.connect(4533, {"127.0.0.1", "127.0.0.1"}); }
    static std::string ask(const Peer& peer, const std::string& line) {
        peer->send(line + "\n");
        return peer->takeReceived();
    }
    /// A client connects, and the user lets the antenna follow.
    Peer following() {
        const Peer peer = connect();
        clock.advance(200);
        f().chkRotOnOff.userClick();
        EXPECT_TRUE(f().chkRotOnOff.ticked());
        return peer;
    }
    std::string state() { return f().lblRotctld.Visible ? f().lblRotctld.Caption.get() : "hidden"; }
};

TEST_F(RotctldLink, ListensInSatelliteRotorAndShowsHowMany) {
    EXPECT_EQ(state(), "rotctld 127.0.0.1:4533");
    EXPECT_EQ(f().lblRotctld.BackColor, form::kWindowBackground);
    EXPECT_FALSE(f().chkRotOnOff.Enabled);
    const Peer one = connect(), two = connect();
    EXPECT_EQ(state(), "rotctld 127.0.0.1:4533, 2 clients");
    clock.advance(200);
    EXPECT_TRUE(f().chkRotOnOff.Enabled);
    two->close();
    EXPECT_EQ(state(), "rotctld 127.0.0.1:4533, 1 client");
    f().mnuCoilTuner.Click.fire();
    EXPECT_TRUE(one->closed());
    EXPECT_EQ(state(), "hidden");
    EXPECT_ANY_THROW(connect());
    f().mnuSat.Click.fire();
    EXPECT_FALSE(connect()->closed());
}

TEST_F(RotctldLink, TheDialogsChoiceTakesEffectAtOnce) {
    const auto save = [this](const char* place, const char* allowed) {
        inDialog<form::FrmHardware>([&](form::FrmHardware& dialog) {
            dialog.txtRotctld.Text = place;
            dialog.txtRotctldAllow.Text = allowed;
            bool saved = false;
            dialog.onUnload = [&] { saved = true; };
            dialog.cmdSaveHardware.Click.fire();
            if (!saved) dialog.cmdExitHardware.Click.fire();
        });
        f().mnuHardware.Click.fire();
    };
    const Peer before = connect();
    save("4534", "");
    EXPECT_TRUE(before->closed());
    EXPECT_EQ(state(), "rotctld 127.0.0.1:4534");
    save("0.0.0.0:4533", "");
    ASSERT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_EQ(state(), "rotctld 127.0.0.1:4534");
    save("0.0.0.0:4533", "192.168.1.20");
    EXPECT_EQ(state(), "rotctld 0.0.0.0:4533");
    EXPECT_EQ(f().lblRotctld.BackColor, form::kAmber);
    EXPECT_TRUE(tcpServers.connect(4533, {"192.168.1.21", "192.168.1.30"})->closed());
    EXPECT_FALSE(tcpServers.connect(4533, {"192.168.1.20", "192.168.1.30"})->closed());
    tcpServers.occupy(4535);
    save("4535", "");
    EXPECT_THAT(state(), HasSubstr("another program has this port"));
    EXPECT_EQ(f().lblRotctld.BackColor, form::kAmber);
    save("off", "");
    EXPECT_EQ(state(), "hidden");
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(RotctldLink, ATargetIsReachedAfterItsClientHasGone) {
    const Peer peer = following();
    EXPECT_EQ(ask(peer, "P 20 10"), "RPRT 0\n");
    peer->close();
    clock.advance(30'000);
    EXPECT_NEAR(f().sngPosAz, 20, 0.13);
    EXPECT_NEAR(f().sngPosEl, 10, 0.13);
    EXPECT_TRUE(f().chkRotOnOff.ticked());
    const Peer asks = connect();
    EXPECT_EQ(ask(asks, "p"), "20.00\n10.00\n");
}

TEST_F(RotctldLink, StopForgetsTheTargetOfAClientAndOfTheUser) {
    const Peer peer = following();
    ask(peer, "P 180 40");
    clock.advance(1000);
    EXPECT_TRUE(f().Timer1.Enabled);
    EXPECT_EQ(ask(peer, "S"), "RPRT 0\n");
    EXPECT_FALSE(f().Timer1.Enabled);
    const float stopped = f().sngPosAz;
    clock.advance(5000);
    EXPECT_EQ(f().sngPosAz, stopped);
    EXPECT_TRUE(f().chkRotOnOff.ticked());

    ask(peer, "P 180 40");
    clock.advance(1000);
    f().cmdAlt.Click.fire();
    EXPECT_FALSE(f().chkRotOnOff.ticked() || f().Timer1.Enabled || f().Timer4.Enabled);
    f().chkRotOnOff.userClick();
    clock.advance(5000);
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(ask(peer, "P 180 40"), "RPRT 0\n");
    clock.advance(400);
    EXPECT_TRUE(f().Timer1.Enabled);
}

TEST_F(RotctldLink, StopStopsWithFollowUntickedToo) {
    const Peer peer = connect();
    f().cmdAv.Click.fire();
    EXPECT_EQ(ask(peer, "S"), "RPRT 0\n");
    EXPECT_FALSE(f().Timer1.Enabled);
}

TEST_F(RotctldLink, AMoveEndsWithItsClient) {
    const Peer peer = following();
    EXPECT_EQ(ask(peer, "M 16 100"), "RPRT 0\n");
    EXPECT_EQ(ask(peer, "M 2 10"), "RPRT 0\n");
    clock.advance(1900);
    EXPECT_TRUE(f().Timer1.Enabled && f().Timer4.Enabled);
    EXPECT_GT(f().sngPosAz, 2 * f().sngPosEl);
    peer->close();
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled);
    const Peer other = connect();
    f().chkRotOnOff.userClick();
    EXPECT_EQ(ask(other, "M 16 100"), "RPRT -11\n");
    EXPECT_EQ(ask(other, "P 90 10"), "RPRT 0\n"); // kept
    clock.advance(5000);
    EXPECT_FALSE(f().Timer2.Enabled);
    f().chkRotOnOff.userClick();
    EXPECT_TRUE(f().Timer2.Enabled); // the move went beyond 90 degrees
}

} // namespace
