#include "platform/bridge/connection.h"
#include "tests/platform/bridge/fake_bridge.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

using Fields = std::vector<std::string>;

class User : public bridge_ports::User {
  public:
    bool wantsBridge() const override { return wants; }
    void bridgeConnected() override { heard.push_back({"(connected)"}); }
    void bridgeLost() override { heard.push_back({"(lost)"}); }
    bool bridgeSaid(const Fields& fields) override {
        heard.push_back(fields);
        if (onLine) onLine();
        return fields.front() == "good";
    }
    std::vector<Fields> take() { return std::exchange(heard, {}); }
    bool wants = false;
    std::function<void()> onLine;
    std::vector<Fields> heard;
};

class BridgeConnectionTest : public ::testing::Test {
  protected:
    BridgeConnectionTest() { connection.attach(user); }
    void connect() {
        fake.run();
        connection.ask();
        fake.accept();
        ASSERT_TRUE(connection.connected());
        user.take();
    }
    /// Milliseconds until the next attempt; -1 when there is none in a minute.
    int untilNextAttempt() {
        const int before = fake.tcp.attempts();
        for (int waited = 0; waited <= 60000; waited += 50) {
            if (fake.tcp.attempts() > before) return waited;
            clock.advance(50);
        }
        return -1;
    }
    simulated::Clock clock;
    FakeBridge fake;
    User user;
    bridge_ports::Connection connection{fake.tcp, clock, "9.9", {}};
};

TEST_F(BridgeConnectionTest, RestsUntilAskedAndGivesUpWhatNobodyWants) {
    clock.advance(60000);
    EXPECT_EQ(fake.tcp.attempts(), 0);
    EXPECT_EQ(connection.stateText(), "bridge not in use: 127.0.0.1:7380");
    connection.ask();
    connection.ask();
    EXPECT_EQ(connection.stateText(), "looking for a bridge at 127.0.0.1:7380");
    fake.tcp.answer();
    EXPECT_EQ(connection.stateText(), "no bridge at 127.0.0.1:7380");
    EXPECT_EQ(untilNextAttempt(), -1);
    EXPECT_EQ(fake.tcp.attempts(), 1);
    EXPECT_EQ(fake.tcp.clients(), 0U);
    connection.stayConnected(true);
    fake.tcp.answer();
    EXPECT_GT(untilNextAttempt(), 0);
}

TEST_F(BridgeConnectionTest, TriesAgainSoonThenSeldomAndFromTheStartAfterAGoodConnection) {
    user.wants = true;
    connection.ask();
    std::vector<int> waits;
    for (int n = 0; n < 7; ++n) {
        fake.tcp.answer();
        waits.push_back(untilNextAttempt());
    }
    EXPECT_THAT(waits, ElementsAre(100, 500, 1000, 2000, 4000, 5000, 5000));
    // One that greets and ends is no good connection.
    fake.run();
    fake.accept();
    fake.tcp.drop();
    EXPECT_EQ(untilNextAttempt(), 5000);
    fake.accept();
    clock.advance(2500);
    fake.tcp.drop();
    EXPECT_EQ(untilNextAttempt(), 100);
}

TEST_F(BridgeConnectionTest, GreetsPingsAndAnswersPings) {
    fake.run();
    connection.ask();
    EXPECT_FALSE(connection.say({"early"}));
    fake.tcp.answer();
    EXPECT_EQ(fake.tcp.takeSent(), "hello 1 twinstep 9.9\n");
    EXPECT_FALSE(connection.say({"early"}));
    fake.say("hello 1 twinstep-bridge 1.2.3");
    EXPECT_THAT(user.take(), ElementsAre(Fields{"(connected)"}));
    EXPECT_EQ(connection.stateText(), "bridge 127.0.0.1:7380 connected (twinstep-bridge 1.2.3)");
    clock.advance(2000);
    EXPECT_EQ(fake.tcp.takeSent(), "ping 1\n");
    fake.say("ping 77");
    EXPECT_EQ(fake.tcp.takeSent(), "pong 77\n");
    EXPECT_TRUE(connection.say({"two words", ""}));
    EXPECT_EQ(fake.tcp.takeSent(), "two\\swords \n");
    EXPECT_FALSE(connection.say({std::string(bridge::kLongestLine, 'x')}));
    EXPECT_TRUE(connection.connected());
}

TEST_F(BridgeConnectionTest, SilenceOfFiveSecondsEndsIt) {
    user.wants = true;
    connect();
    for (int n = 0; n < 10; ++n) {
        clock.advance(4900);
        fake.say("pong 1");
        ASSERT_TRUE(connection.connected());
    }
    clock.advance(4999);
    EXPECT_TRUE(connection.connected());
    clock.advance(1);
    EXPECT_FALSE(connection.connected());
    EXPECT_THAT(user.take(), ElementsAre(Fields{"(lost)"}));
    EXPECT_EQ(connection.stateText(), "no bridge at 127.0.0.1:7380: it fell silent");
    // A peer that accepts and does not greet, however much it says.
    EXPECT_EQ(untilNextAttempt(), 100);
    fake.tcp.answer();
    for (int n = 0; n < 49; ++n) {
        clock.advance(100);
        fake.say("HTTP/1.1 400 Bad Request");
        ASSERT_EQ(fake.tcp.clients(), 1U);
    }
    clock.advance(100);
    EXPECT_EQ(fake.tcp.clients(), 0U);
    EXPECT_EQ(connection.stateText(), "no bridge at 127.0.0.1:7380: it does not answer");
}

TEST_F(BridgeConnectionTest, AnotherVersionOrARefusalIsNoConnectionAndSaysWhy) {
    user.wants = true;
    fake.run();
    connection.ask();
    fake.tcp.answer();
    fake.say("hello 2 twinstep-bridge 9.0\ngood 1");
    EXPECT_THAT(user.take(), ElementsAre(Fields{"(lost)"}));
    EXPECT_EQ(fake.tcp.clients(), 0U);
    EXPECT_THAT(connection.stateText(), HasSubstr("it speaks version 2 of the line protocol"));
    EXPECT_EQ(untilNextAttempt(), 100);
    fake.tcp.answer();
    fake.say("error too\\smany clients");
    fake.tcp.drop();
    EXPECT_EQ(connection.stateText(), "no bridge at 127.0.0.1:7380: too many clients");
}

TEST_F(BridgeConnectionTest, BadLinesAreCountedAndHarmless) {
    connect();
    const std::string longLine(bridge::kLongestLine, 'x');
    for (const auto& line : {std::string("good \\x"), longLine, std::string(), std::string("bad"),
                             std::string("hello 1 again 1"), std::string("ping"), std::string("\0\xff", 2)})
        fake.say(line);
    fake.say("good 1");
    fake.say("error \\sodd");
    EXPECT_TRUE(connection.connected());
    EXPECT_THAT(connection.stateText(), HasSubstr("its last error:  odd; lines not understood: 7"));
    EXPECT_EQ(user.take().back(), (Fields{"good", "1"}));
    EXPECT_THAT(fake.heard(), IsEmpty());
}

TEST_F(BridgeConnectionTest, AnotherAddressEndsTheOldConnection) {
    user.wants = true;
    connect();
    connection.setAddress({"127.0.0.1", 7380});
    EXPECT_TRUE(connection.connected());
    connection.setAddress({"fe80::1", 7400});
    EXPECT_FALSE(connection.connected());
    EXPECT_THAT(user.take(), ElementsAre(Fields{"(lost)"}));
    EXPECT_EQ(fake.tcp.lastAddress(), "fe80::1:7400");
    EXPECT_EQ(fake.tcp.clients(), 1U);
    EXPECT_EQ(connection.stateText(), "looking for a bridge at [fe80::1]:7400");
    // From within a line, the rest of what the old bridge said is not heard.
    connection.setAddress({});
    fake.accept();
    user.take();
    user.onLine = [this] { connection.setAddress({"other", 1}); };
    fake.say("good 1\ngood 2");
    EXPECT_THAT(user.take(), ElementsAre(Fields{"good", "1"}, Fields{"(lost)"}));
}

TEST_F(BridgeConnectionTest, LinesThatComeWhileOneIsHandledAreHeardAtOnceAndOnce) {
    connect();
    user.onLine = [this] {
        user.onLine = nullptr;
        fake.tcp.send("d 3\ngood 4\n");
    };
    fake.tcp.send("good 1\ngood 2\ngoo");
    EXPECT_THAT(user.take(), ElementsAre(Fields{"good", "1"}, Fields{"good", "2"}, Fields{"good", "3"},
                                         Fields{"good", "4"}));
}

TEST_F(BridgeConnectionTest, ABridgeThatDoesNotReadIsLeft) {
    user.wants = true;
    connect();
    fake.tcp.stopReading(true);
    const std::string line(4000, 'x');
    int taken = 0;
    while (taken < 1000 && connection.say({line}))
        ++taken;
    EXPECT_EQ(taken, 16);
    EXPECT_TRUE(user.take().empty());
    clock.advance(1);
    EXPECT_THAT(user.take(), ElementsAre(Fields{"(lost)"}));
    EXPECT_EQ(connection.stateText(), "no bridge at 127.0.0.1:7380: it does not read");
}

} // namespace
