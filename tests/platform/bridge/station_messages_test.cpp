#include "platform/bridge/station_messages.h"
#include "tests/platform/bridge/fake_bridge.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class BridgeStationMessagesTest : public ::testing::Test {
  protected:
    void connect() {
        fake.run();
        connection.ask();
        fake.accept();
    }
    /// Subscribes as Logger32's logic does.
    void hook() {
        procedure = station.hook(form, [this](long number, long wParam, long lParam) {
            received.push_back({number, wParam, lParam});
            if (onMessage) onMessage();
        });
    }
    simulated::Clock clock;
    FakeBridge fake;
    bridge_ports::Connection connection{fake.tcp, clock, "9.9", {}};
    bridge_ports::StationMessages station{connection, clock};
    const long message = station.registerMessage("Logger32");
    const long form = station.ownWindow("Form1");
    long procedure = 0;
    std::vector<std::vector<long>> received;
    std::function<void()> onMessage;
};

TEST_F(BridgeStationMessagesTest, NumbersAreLocalStableAndUnmistakable) {
    EXPECT_EQ(station.registerMessage("Logger32"), message);
    EXPECT_NE(station.registerMessage("Other"), message);
    EXPECT_GE(message, 0xC000);
    EXPECT_LE(message, 0xFFFF);
    EXPECT_EQ(station.ownWindow("Form1"), form);
    EXPECT_NE(station.ownWindow("frmTunerConn"), form);
    EXPECT_GE(station.ownWindow("frmTunerConn"), std::numeric_limits<long>::max() - 1); // far from a handle
    clock.advance(60000);
    EXPECT_EQ(fake.tcp.attempts(), 0); // names alone need no bridge
}

TEST_F(BridgeStationMessagesTest, SubscribesReceivesAndLetsGo) {
    hook();
    EXPECT_NE(procedure, 0);
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    fake.run();
    fake.accept();
    EXPECT_THAT(fake.heard(), ElementsAre("register Logger32", "listen Form1", "watch Logger32"));
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    fake.say("window Logger32 66052");
    EXPECT_EQ(station.findWindow("Logger32"), 66052);
    EXPECT_EQ(station.findWindow("Logger32"), 66052);
    station.post(66052, message, 3, form);
    station.post(66052, message, 4, 0);
    station.post(66052, message, 100, -14200000);
    station.post(66052, message + 1, 3, form); // never registered
    EXPECT_THAT(fake.heard(), ElementsAre("post 66052 Logger32 3 @Form1", "post 66052 Logger32 4 0",
                                          "post 66052 Logger32 100 -14200000"));
    fake.say("message Form1 Logger32 100 14200000\nmessage Form1 Logger32 -1 -2");
    EXPECT_EQ(received, (std::vector<std::vector<long>>{{message, 100, 14200000}, {message, -1, -2}}));
    station.unhook(form, procedure);
    EXPECT_THAT(fake.heard(), ElementsAre("unlisten Form1"));
    fake.say("message Form1 Logger32 100 7");
    EXPECT_EQ(received.size(), 2U);
}

TEST_F(BridgeStationMessagesTest, EveryGapIsSeenByWhoeverPolls) {
    connect();
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    const std::pair<const char*, std::vector<long>> cases[] = {
        {"window Logger32 5", {5, 5}},                    // appears
        {"window Logger32 5", {5, 5}},                    // nothing new
        {"window Logger32 0\nwindow Logger32 5", {0, 5}}, // restarted under the same handle
        {"window Logger32 6", {0, 6}},                    // under another
        {"window Logger32 0", {0, 0}},                    // gone
        {"window Logger32 7\nwindow Logger32 0\nwindow Logger32 8", {0, 8}}, // between two polls
        {"window Other 9\nwindow Logger32 -1\nwindow Logger32 x", {8, 8}},   // nonsense
    };
    for (const auto& [lines, answers] : cases) {
        fake.say(lines);
        for (const long answer : answers)
            EXPECT_EQ(station.findWindow("Logger32"), answer) << lines;
    }
}

TEST_F(BridgeStationMessagesTest, ANewBridgeIsToldEverythingBeforeAnyWindow) {
    hook();
    station.findWindow("Logger32");
    fake.run();
    fake.accept();
    fake.say("window Logger32 5");
    EXPECT_EQ(station.findWindow("Logger32"), 5);
    fake.heard();
    fake.quit();
    fake.run();
    clock.advance(100);
    fake.accept();
    EXPECT_THAT(fake.heard(), ElementsAre("register Logger32", "listen Form1", "watch Logger32"));
    fake.say("window Logger32 5");
    // The bridge was away between two polls: what was subscribed is gone.
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    EXPECT_EQ(station.findWindow("Logger32"), 5);
    fake.quit();
    EXPECT_EQ(station.findWindow("Logger32"), 0);
    station.post(5, message, 3, form);
    EXPECT_THAT(fake.heard(), IsEmpty());
}

TEST_F(BridgeStationMessagesTest, WantsTheBridgeOnlyWhileSomeoneListensOrLooks) {
    hook();
    for (int poll = 0; poll < 200; ++poll) {
        station.findWindow("Logger32");
        fake.tcp.answer();
        clock.advance(500);
    }
    const int attempts = fake.tcp.attempts();
    EXPECT_GT(attempts, 15);
    EXPECT_LT(attempts, 30); // every five seconds, not at every poll
    station.unhook(form, procedure);
    clock.advance(30000);
    fake.tcp.answer();
    const int atTheEnd = fake.tcp.attempts();
    clock.advance(60000);
    EXPECT_LE(fake.tcp.attempts(), atTheEnd);

    connect();
    EXPECT_THAT(fake.heard(), ElementsAre("register Logger32"));
    station.findWindow("Logger32");
    for (int n = 0; n < 11; ++n) {
        fake.say("ping 1");
        clock.advance(1000);
    }
    EXPECT_THAT(fake.heard(), ::testing::IsSupersetOf({"watch Logger32", "unwatch Logger32"}));
}

TEST_F(BridgeStationMessagesTest, NonsenseReachesNobodyAndAReceiverMayLeaveInsideItsCall) {
    connect();
    hook();
    fake.heard();
    for (const auto* line :
         {"message Form1 Logger32 100", "message Form1 Other 100 1", "message frmTunerConn Logger32 100 1",
          "message Form1 Logger32 x 1", "message Form1 Logger32 100 99999999999999999999",
          "message Form1 Logger32 1 2 3"})
        fake.say(line);
    EXPECT_THAT(received, IsEmpty());
    EXPECT_TRUE(connection.connected());
    onMessage = [this] { station.unhook(form, procedure); };
    fake.say("message Form1 Logger32 100 1\nmessage Form1 Logger32 100 2");
    EXPECT_EQ(received.size(), 1U);
    EXPECT_THAT(fake.heard(), ElementsAre("unlisten Form1"));
}

} // namespace
