#include "platform/bridge/dde_links.h"
#include "tests/platform/bridge/fake_bridge.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class BridgeDdeLinksTest : public ::testing::Test {
  protected:
    using Texts = std::vector<std::string>;

    void connect() {
        fake.run();
        connection.ask();
        fake.accept();
    }
    platform::DdeEvents events(const std::string& name) {
        platform::DdeEvents events;
        const auto tell = [this, name](const std::string& what) {
            told.push_back(name + " " + what);
            if (onEvent) onEvent();
        };
        events.opened = [tell] { tell("opened"); };
        events.failed = [tell] { tell("failed"); };
        events.closed = [tell] { tell("closed"); };
        events.changed = [tell](const std::string& text) { tell("= " + text); };
        return events;
    }
    std::unique_ptr<platform::DdeLink> open(const std::string& name, const std::string& topic = "App|Topic") {
        return links.open(topic, "Item", events(name));
    }
    Texts take() { return std::exchange(told, {}); }

    simulated::Clock clock;
    FakeBridge fake;
    bridge_ports::Connection connection{fake.tcp, clock, "9.9", {}};
    bridge_ports::DdeLinks links{connection, clock};
    Texts told;
    std::function<void()> onEvent;
};

TEST_F(BridgeDdeLinksTest, OpensFollowsChangesAndCloses) {
    connect();
    auto a = open("a", "HRD RADIO|CAT|1");
    auto b = open("b");
    EXPECT_THAT(fake.heard(), ElementsAre("link 1 HRD\\sRADIO CAT|1 Item", "link 2 App Topic Item"));
    fake.say("opened 1\nopened 2\nchanged 1 14.200.000\nchanged 2 two\\swords\\sand\\sGr\xc3\xbc\xc3\x9f"
             "e\nchanged 1 ");
    EXPECT_THAT(take(), ElementsAre("a opened", "b opened", "a = 14.200.000",
                                    "b = two words and Gr\xc3\xbc\xc3\x9f"
                                    "e",
                                    "a = "));
    fake.say("closed 1\nclosed 1\nchanged 1 late");
    EXPECT_THAT(take(), ElementsAre("a closed"));
    a.reset();
    EXPECT_THAT(fake.heard(), IsEmpty());
    b.reset();
    EXPECT_THAT(fake.heard(), ElementsAre("unlink 2"));
    fake.say("changed 2 late\nclosed 2");
    clock.advance(3000);
    EXPECT_THAT(take(), IsEmpty());
    auto c = open("c");
    EXPECT_THAT(fake.heard(), ElementsAre("link 3 App Topic Item")); // a number is not used again
}

TEST_F(BridgeDdeLinksTest, AnswersWithinASecondWhateverTheBridgeDoes) {
    struct Case {
        const char* what;
        std::function<void()> before, after;
        int within; // milliseconds
    };
    const std::function<void()> nothing = [] {};
    int n = 0; // of the link
    const Case cases[] = {
        {"no bridge", nothing, [this] { fake.tcp.answer(); }, 1},
        {"an address that does not answer", nothing, nothing, 1000},
        {"no greeting", [this] { fake.run(); }, [this] { fake.tcp.answer(); }, 1000},
        {"no answer", [this] { connect(); }, nothing, 1000},
        {"no server", [this] { connect(); },
         [this, &n] { fake.say("failed " + std::to_string(n) + " no\\sserver"); }, 0},
        {"lost meanwhile", [this] { connect(); }, [this] { fake.quit(); }, 1},
        {"another bridge", [this] { connect(); },
         [this] {
             connection.setAddress({"other", 1});
         },
         1},
        {"another version", [this] { fake.run(); },
         [this] {
             fake.tcp.answer();
             fake.say("hello 2 x y");
         },
         1},
        {"a bridge that reads nothing",
         [this] {
             connect();
             fake.tcp.stopReading(true);
         },
         [this] { fake.quit(); }, 1},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        // A desk of its own for each case, but for the numbers of the links.
        fake.quit();
        fake.tcp.stopReading(false);
        connection.setAddress({"127.0.0.1", 7379});
        connection.setAddress({});
        clock.advance(60000);
        take();
        each.before();
        auto link = open("x");
        ++n;
        EXPECT_THAT(take(), IsEmpty());
        each.after();
        clock.advance(each.within);
        EXPECT_THAT(take(), ElementsAre("x failed"));
        // Whoever answers late is not heard.
        fake.say("opened " + std::to_string(n));
        clock.advance(3000);
        EXPECT_THAT(take(), IsEmpty());
    }
}

TEST_F(BridgeDdeLinksTest, ALateAnswerLeavesNothingBehindInTheBridge) {
    connect();
    const auto link = open("a");
    fake.heard();
    clock.advance(1000);
    EXPECT_THAT(fake.heard(), ElementsAre("unlink 1"));
}

TEST_F(BridgeDdeLinksTest, AClickFindsABridgeThatCameSinceTheLastOne) {
    auto first = open("first");
    fake.tcp.answer();
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("first failed"));
    clock.advance(60000);
    EXPECT_EQ(fake.tcp.attempts(), 1); // nobody wants it any more
    fake.run();
    auto second = open("second");
    fake.accept();
    EXPECT_THAT(fake.heard(), ElementsAre("link 2 App Topic Item"));
    fake.say("opened 2");
    EXPECT_THAT(take(), ElementsAre("second opened"));
    clock.advance(3000);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(BridgeDdeLinksTest, EndingALinkIsQuietAlsoWhileItIsBeingMade) {
    auto early = open("early");
    early.reset();
    connect();
    EXPECT_THAT(fake.heard(), IsEmpty());
    auto asked = open("asked");
    asked.reset();
    EXPECT_THAT(fake.heard(), ElementsAre("link 2 App Topic Item", "unlink 2"));
    fake.say("opened 2\nchanged 2 x");
    auto doomed = open("doomed");
    fake.quit();
    doomed.reset();
    clock.advance(3000);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(BridgeDdeLinksTest, ALinkMayGoInsideAnyOfItsCallbacks) {
    const std::pair<const char*, Texts> cases[] = {
        {"a opened", {"a opened"}},
        {"a = x", {"a opened", "a = x"}},
        {"a closed", {"a opened", "a = x", "a closed"}},
    };
    int n = 0;
    for (const bool bridgeGoes : {false, true}) {
        for (const auto& [last, expected] : cases) {
            SCOPED_TRACE(last);
            connect();
            auto link = open("a");
            onEvent = [&, goesAt = std::string(last)] {
                if (told.back() == goesAt) link.reset();
            };
            const std::string id = std::to_string(++n);
            fake.say("opened " + id + "\nchanged " + id + " x");
            if (!bridgeGoes) fake.say("closed " + id);
            fake.quit();
            clock.advance(3000);
            EXPECT_EQ(link, nullptr);
            EXPECT_EQ(take(), expected);
        }
    }
    connect();
    auto link = open("a");
    onEvent = [&link] { link.reset(); };
    fake.say("failed " + std::to_string(++n) + " x");
    EXPECT_THAT(take(), ElementsAre("a failed"));
    link = open("b");
    clock.advance(3000);
    EXPECT_EQ(link, nullptr);
    EXPECT_THAT(take(), ElementsAre("b failed"));
}

TEST_F(BridgeDdeLinksTest, TheBridgesEndClosesEachLinkOnceEvenWhileABoxIsOpen) {
    connect();
    const auto a = open("a"), b = open("b"), c = open("c");
    fake.say("opened 1\nopened 2");
    take();
    // The first to hear of it opens a box, in which time goes on.
    onEvent = [this] {
        onEvent = nullptr;
        clock.advance(2000);
        EXPECT_THAT(take(), ElementsAre("a closed", "b closed", "c failed"));
    };
    fake.quit();
    clock.advance(5000);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(BridgeDdeLinksTest, NonsenseAboutLinksChangesNothing) {
    connect();
    const auto a = open("a");
    for (const auto* line :
         {"changed 1 early", "opened", "opened x", "opened 1 2", "opened -1", "opened 99999999999999999999",
          "failed", "changed 1", "changed 1 a b", "opened 4294967297"})
        fake.say(line);
    EXPECT_THAT(take(), IsEmpty());
    fake.say("opened 1\nopened 1");
    EXPECT_THAT(take(), ElementsAre("a opened"));
    // An end is an end, by either word.
    fake.say("failed 1 the\\stext\\sis\\stoo\\slong");
    EXPECT_THAT(take(), ElementsAre("a closed"));
    const auto other = open("c");
    fake.say("closed 2");
    EXPECT_THAT(take(), ElementsAre("c failed"));
    const auto tooLong = open("b", std::string(5000, 'x') + "|y");
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("b failed"));
}

} // namespace
