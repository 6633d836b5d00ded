// The real main window's logic with the bridge's client under it.

#include "platform/bridge/dde_links.h"
#include "platform/bridge/station_messages.h"
#include "tests/desk.h"
#include "tests/platform/bridge/fake_bridge.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class BridgeWindowTest : public Desk {
  protected:
    void SetUp() override {
        app::Ports outside = ports();
        outside.links = ddeLinks;
        outside.station = messages;
        controller = std::make_unique<app::Controller>(outside, folder.path());
        controller->start();
    }
    void TearDown() override { controller.reset(); }

    void runBridge() {
        fake.run();
        connection.ask();
        fake.accept();
        fake.heard();
    }
    void restartBridge() {
        fake.quit();
        fake.run();
        clock.advance(110);
        fake.accept();
    }
    void choose(int program) { f().intConnProgrTuner = program; }
    void click() { f().cmdAutoMemConn.Click.fire(); }
    std::string state() { return f().lblAutoMemConn.Caption; }
    std::string button() { return f().cmdAutoMemConn.Caption; }

    FakeBridge fake;
    bridge_ports::Connection connection{fake.tcp, clock, "9.9", {}};
    bridge_ports::DdeLinks ddeLinks{connection, clock};
    bridge_ports::StationMessages messages{connection, clock};
};

TEST_F(BridgeWindowTest, HamRadioDeluxeIsErrorWithoutABridgeOrAServer) {
    choose(form::kHamRadioDeluxe);
    click();
    EXPECT_EQ(state(), "Connect");
    fake.tcp.answer();
    clock.advance(1);
    EXPECT_EQ(state(), "Error");
    EXPECT_EQ(button(), "0");
    clock.advance(60000);
    EXPECT_EQ(fake.tcp.attempts(), 1);
    runBridge();
    click();
    click(); // once is enough
    EXPECT_THAT(fake.heard(), ElementsAre("link 2 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY"));
    fake.say("failed 2 no\\sserver");
    EXPECT_EQ(state(), "Error");
    click();
    clock.advance(1000);
    EXPECT_EQ(state(), "Error");
    EXPECT_FALSE(f().chkAutoMemOnOff.Enabled);
}

TEST_F(BridgeWindowTest, HamRadioDeluxesFrequencyArrivesAndAClosedLinkShows) {
    runBridge();
    choose(form::kHamRadioDeluxe);
    const std::pair<const char*, std::function<void()>> closings[] = {
        {"1", [this] { fake.say("closed 1"); }}, // by the program itself
        {"2", [this] { fake.quit(); }},          // by the end of the bridge
    };
    for (const auto& [id, close] : closings) {
        click();
        fake.say(std::string("opened ") + id + "\nchanged " + id + " 14.025.000");
        EXPECT_EQ(state(), "Connected");
        EXPECT_EQ(button(), "I");
        EXPECT_EQ(f().lblFreqRx.Caption, "14.025.000");
        poll();
        EXPECT_EQ(f().strFreqKey, "14");
        close();
        clock.advance(1);
        EXPECT_EQ(state(), "Connect");
        EXPECT_EQ(f().lblFreqRx.Caption, "");
        EXPECT_EQ(button(), "I");
        click();
        EXPECT_EQ(button(), "0");
    }
}

TEST_F(BridgeWindowTest, ALinkThatIsBeingMadeDoesNotOpenBesideTheNextProgram) {
    runBridge();
    choose(form::kHamRadioDeluxe);
    click();
    inDialog<form::FrmTunerConn>([this](form::FrmTunerConn& dialog) {
        fake.say("opened 1");
        EXPECT_EQ(button(), "0");
        // The dialog's own test, left while its link is being made.
        dialog.optHamDeluxe.userClick();
        dialog.cmdOn.Click.fire();
        dialog.cmdOff.Click.fire();
        dialog.cmdOn.Click.fire();
    });
    fake.heard();
    f().mnuTunConn.Click.fire();
    EXPECT_THAT(fake.heard(),
                ElementsAre("unlink 1", "link 2 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY", "unlink 2",
                            "link 3 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY", "unlink 3"));
    fake.say("opened 3\nchanged 3 14.1");
    clock.advance(3000);
    EXPECT_EQ(button(), "0");
    EXPECT_EQ(state(), "Connect");
}

TEST_F(BridgeWindowTest, Logger32IsSubscribedAnewByItself) {
    const auto subscription = [](int handle) {
        return "post " + std::to_string(handle) + " Logger32 3 @Form1";
    };
    choose(form::kLogger32);
    click();
    EXPECT_EQ(state(), "Connected");
    poll();
    EXPECT_EQ(state(), "Disconnected");
    restartBridge();
    EXPECT_THAT(fake.heard(), ElementsAre("register Logger32", "listen Form1", "watch Logger32"));
    fake.say("window Logger32 0");
    poll();
    EXPECT_EQ(state(), "Disconnected");
    fake.say("window Logger32 77");
    poll();
    EXPECT_EQ(state(), "Connected");
    EXPECT_THAT(fake.heard(), ElementsAre(subscription(77)));
    fake.say("message Form1 Logger32 100 14200000");
    EXPECT_EQ(f().lblLog32DataM.Caption, "14.200.000");
    fake.say("message Form1 Logger32 100 3573000");
    EXPECT_EQ(f().lblLog32DataM.Caption, " 3.573.000");

    const std::pair<const char*, std::function<void()>> interruptions[] = {
        {"Logger32 restarts between two polls",
         [this] { fake.say("window Logger32 0\nwindow Logger32 78"); }},
        {"the bridge restarts between two polls",
         [this] {
             restartBridge();
             fake.heard();
             fake.say("window Logger32 78");
         }},
        {"Logger32 is away for long",
         [this] {
             fake.say("window Logger32 0");
             poll();
             poll();
             fake.say("window Logger32 78");
         }},
    };
    for (const auto& [what, interrupt] : interruptions) {
        SCOPED_TRACE(what);
        interrupt();
        poll();
        poll();
        EXPECT_EQ(state(), "Connected");
        EXPECT_THAT(fake.heard(), ElementsAre(subscription(78)));
    }
    click();
    EXPECT_THAT(fake.heard(), ElementsAre("post 78 Logger32 4 0", "unlisten Form1"));
    EXPECT_EQ(f().lblLog32DataM.Caption, "");
}

TEST_F(BridgeWindowTest, ClosingTheWindowUnsubscribesAndEndsTheLinks) {
    runBridge();
    choose(form::kLogger32);
    click();
    poll();
    fake.say("window Logger32 5");
    poll();
    fake.heard();
    controller->close();
    EXPECT_THAT(fake.heard(), ElementsAre("post 5 Logger32 4 0", "unlisten Form1"));
}

TEST_F(BridgeWindowTest, OrbitronFailsShowsItsLinesAndCloses) {
    f().mnuSat.Click.fire();
    f().intSatSource = 1;
    f().cmdConnect.Click.fire();
    EXPECT_EQ(f().cmdConnect.Caption, "I");
    fake.tcp.answer();
    clock.advance(1);
    EXPECT_EQ(f().cmdConnect.Caption, "0");
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    runBridge();
    f().cmdConnect.Click.fire();
    f().cmdConnect.Click.fire(); // taken back while it is being made
    f().cmdConnect.Click.fire();
    EXPECT_THAT(fake.heard(), ElementsAre("link 2 Orbitron Tracking TrackingData", "unlink 2",
                                          "link 3 Orbitron Tracking TrackingData"));
    fake.say("opened 2\nopened 3");
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
    fake.say("changed 3 ISS\\sAZ123.4\\sEL45.6");
    EXPECT_EQ(f().lblAzRx.Caption, "123.4");
    fake.say("closed 3");
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    f().cmdConnect.Click.fire();
    EXPECT_EQ(f().cmdConnect.Caption, "0");
}

TEST_F(BridgeWindowTest, SatPc32FailsInABoxBesideWhichLinesArrive) {
    runBridge();
    f().mnuSat.Click.fire();
    f().cmdConnect.Click.fire();
    fake.say("opened 1");
    f().intSatSource = 1;
    f().chkOpenCom.userClick();
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
    fake.heard();
    dialogs.whileOpen = [this] {
        fake.say("changed 1 ISS\\sAZ10\\sEL20");
        for (int n = 0; n < 10; ++n) {
            clock.advance(1000);
            fake.say("pong 1");
        }
        EXPECT_EQ(f().lblAzRx.Caption, "10");
    };
    fake.say("failed 2 no\\sserver\nchanged 1 ISS\\sAZ11\\sEL21");
    EXPECT_EQ(dialogs.takeMessages(),
              (std::vector<simulated::Dialogs::Message>{
                  {"Cannot connect to satellite data! Restart SatPc32", "Error!", true}}));
    EXPECT_FALSE(f().chkOpenCom.ticked());
    EXPECT_TRUE(connection.connected());

    dialogs.whileOpen = nullptr;
    f().chkOpenCom.userClick();
    fake.say("opened 3\nchanged 3 SNAZUR\\sAZ123.4\\sEL45.6\\sMA1");
    EXPECT_EQ(f().lblAzRx.Caption, "123.40");
    fake.quit();
    clock.advance(1);
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    EXPECT_THAT(dialogs.takeMessages(), IsEmpty());
}

} // namespace
