#include "bridge/server.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"
#include "platform/simulated/tcp_servers.h"

#include <gmock/gmock.h>
#include <optional>

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr const char* kHere = "127.0.0.1";

/// One client and what it hears, line by line.
struct Client {
    std::shared_ptr<simulated::TcpServers::Peer> peer;

    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        bridge::LineReader reader;
        reader.feed(peer->takeReceived());
        while (const auto line = reader.next())
            lines.push_back(line->text);
        return lines;
    }
    /// What the bridge answers to these lines.
    std::vector<std::string> say(const std::string& text) const {
        peer->send(text + "\n");
        return lines();
    }
};

class BridgeServer : public ::testing::Test {
  protected:
    void start(std::vector<std::string> allowed = {}) { start(std::move(allowed), links_); }
    void start(std::vector<std::string> allowed, platform::DdeLinks& links) {
        server_.emplace(bridge::Server::Ports{links, station_, clock_, tcp_},
                        bridge::Server::Settings{"0.0.0.0", bridge::kPort, std::move(allowed), "1.2.3"},
                        bridge::Server::Events{[this](const std::string& line) { log_.push_back(line); },
                                               [this](const bridge::State& state) { state_ = state; }});
    }
    Client connect(const std::string& peer = kHere, const std::string& here = "192.168.1.30") {
        return {tcp_.connect(bridge::kPort, {peer, here})};
    }
    Client greeted() {
        Client client = connect();
        client.say("hello 1 twinstep 1.0.0");
        return client;
    }
    /// Time passes for a client that is alive.
    void live(const Client& client, int milliseconds) {
        for (int passed = 0; passed < milliseconds; passed += bridge::kPingInterval) {
            clock_.advance(bridge::kPingInterval);
            client.peer->send("pong 1\n");
        }
    }

    simulated::Clock clock_;
    simulated::DdeLinks links_;
    simulated::StationMessages station_;
    simulated::TcpServers tcp_;
    std::vector<std::string> log_;
    bridge::State state_;
    std::optional<bridge::Server> server_;
};

TEST_F(BridgeServer, GreetsAtOnceAndTellsItsVersion) {
    start();
    const Client client = connect();
    EXPECT_THAT(client.lines(), ElementsAre("hello 1 twinstep-bridge 1.2.3"));
    EXPECT_THAT(client.say("hello 1 twinstep 1.0.0"), IsEmpty());
    EXPECT_EQ(bridge::toText(state_), "1 controller, 0 links");
}

TEST_F(BridgeServer, AnyOtherFirstLineEndsTheConversation) {
    start();
    for (const auto* first : {"hello 2 twinstep 1.0.0", "ping 1", "GET / HTTP/1.1", "hello 1", "\\x", ""}) {
        const Client client = connect();
        client.lines();
        EXPECT_THAT(client.say(std::string(first) + "\nping 1"), ElementsAre(HasSubstr("error version")))
            << first;
        EXPECT_TRUE(client.peer->closed()) << first;
    }
}

TEST_F(BridgeServer, ALinkBringsItsItem) {
    start();
    links_.run("HRD_RADIO_000|HRD_CAT");
    const Client client = greeted();
    EXPECT_THAT(client.say("link 7 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY"), ElementsAre("opened 7"));
    EXPECT_EQ(bridge::toText(state_), "1 controller, 1 link");
    links_.poke("HRD_RADIO_000|HRD_CAT", "HRD_FREQUENCY", "14.025 M\xc3\xbc");
    EXPECT_THAT(client.lines(), ElementsAre("changed 7 14.025\\sM\xc3\xbc"));
    links_.quit("HRD_RADIO_000|HRD_CAT");
    EXPECT_THAT(client.lines(), ElementsAre("closed 7"));
    // The number is free again, and nobody serves it.
    EXPECT_THAT(client.say("link 7 HRD_RADIO_000 HRD_CAT HRD_FREQUENCY"),
                ElementsAre("failed 7 no\\sserver\\sanswered"));
    // It may have ended a moment ago: nothing to complain of.
    EXPECT_THAT(client.say("unlink 7"), IsEmpty());
}

TEST_F(BridgeServer, AnEndedLinkIsSilent) {
    start();
    links_.run("A|T");
    const Client client = greeted();
    client.say("link 1 A T I\nunlink 1\nlink 2 A T I");
    links_.poke("A|T", "I", "x");
    EXPECT_THAT(client.lines(), ElementsAre("changed 2 x"));
    // Too long for a line, counted with its escapes; the link is over.
    links_.poke("A|T", "I", std::string(bridge::kLongestLine / 2, ' '));
    EXPECT_THAT(client.lines(), ElementsAre(HasSubstr("failed 2 the\\sitem's\\stext")));
    links_.poke("A|T", "I", "y");
    EXPECT_THAT(client.lines(), IsEmpty());
}

TEST_F(BridgeServer, WatchesTitlesAndCarriesMessagesBothWays) {
    start();
    const Client client = greeted();
    EXPECT_THAT(client.say("register Logger32\nlisten Form1\nwatch Logger32"),
                ElementsAre("window Logger32 0"));
    // A handle with the highest bit is told without a sign.
    station_.showWindow("Logger32", -16);
    clock_.advance(250);
    EXPECT_THAT(client.lines(), ElementsAre("window Logger32 4294967280"));

    EXPECT_THAT(client.say("post 4294967280 Logger32 3 @Form1\npost 4294967280 Logger32 4 -7"), IsEmpty());
    const long message = station_.registerMessage("Logger32");
    const auto posted = station_.takePosted();
    ASSERT_EQ(posted.size(), 2u);
    EXPECT_EQ(posted[1], (simulated::StationMessages::Posted{-16, message, 4, -7}));
    const long own = posted[0].lParam;
    EXPECT_EQ(posted[0], (simulated::StationMessages::Posted{-16, message, 3, own}));

    station_.deliver(own, message, 100, 14200000);
    EXPECT_THAT(client.lines(), ElementsAre("message Form1 Logger32 100 14200000"));
    station_.deliver(own, message + 1, 100, 1); // not one that it registered
    EXPECT_THAT(client.say("unlisten Form1"), IsEmpty());
    EXPECT_FALSE(station_.hooked(own));

    station_.closeWindow("Logger32");
    clock_.advance(250);
    EXPECT_THAT(client.lines(), ElementsAre("window Logger32 0"));
    client.say("unwatch Logger32");
    station_.showWindow("Logger32", 5);
    clock_.advance(1000);
    EXPECT_THAT(client.lines(), IsEmpty());
}

TEST_F(BridgeServer, PostsOnlyToWindowsAndMessagesThatTheClientMayUse) {
    start();
    station_.showWindow("Logger32", 50);
    station_.showWindow("Bank", 60);
    const Client other = greeted();
    other.say("register Other\nlisten Theirs\nwatch Bank");
    const Client client = greeted();
    client.say("register Logger32\nwatch Logger32\nwatch Nobody");
    for (const auto* line : {
             "post 60 Logger32 1 2",          // watched by another client
             "post 0 Logger32 1 2",           // what was pushed for a window that is not there
             "post -4294967246 Logger32 1 2", // 50 in its lower 32 bits
             "post x Logger32 1 2",
             "post 50 Other 1 2", // registered by another client
             "post 50 Logger32 1 @Theirs",
             "post 50 Logger32 @Theirs 1",
             "post 50 Logger32 1 2147483648",
             "post 50 Logger32 1 x",
             "post 50 Logger32 1",
         })
        EXPECT_THAT(client.say(line), ElementsAre(HasSubstr("error "))) << line;
    // The title has gone to another window since it was last pushed.
    station_.showWindow("Logger32", 51);
    EXPECT_THAT(client.say("post 50 Logger32 1 2"),
                ElementsAre("window Logger32 51", HasSubstr("error not\\sa\\swindow")));
    EXPECT_THAT(station_.takePosted(), IsEmpty());
    client.say("post 51 Logger32 1 2");
    EXPECT_EQ(station_.takePosted().size(), 1u);
}

TEST_F(BridgeServer, AWrongLineIsRefusedAndTheNextIsObeyed) {
    start();
    links_.run("A|T");
    const Client client = greeted();
    client.say("link 1 A T I");
    for (const std::string& line :
         {std::string("fly"), std::string(), std::string("ping"), std::string("ping 1 2"),
          std::string("ping \\x"), std::string("ping "), std::string(bridge::kLongestLine, 'x'),
          std::string("hello 1 twinstep 1.0.0"), std::string("link 1 A T I"), std::string("link 0 A T I"),
          std::string("link 2147483648 A T I"), std::string("link 2 A|T T I"), std::string("link 2  T I"),
          "watch " + std::string(bridge::Session::kLongestName + 1, 'x')})
        EXPECT_THAT(client.say(line + "\nping 9"), ElementsAre(HasSubstr("error "), "pong 9")) << line;
    EXPECT_EQ(state_.links, 1);
    // One of them is enough for the log.
    EXPECT_EQ(std::ranges::count_if(
                  log_, [](const auto& line) { return line.find("wrong line") != std::string::npos; }),
              1);
}

TEST_F(BridgeServer, EachClientHasItsShareAndNoMore) {
    start();
    links_.run("A|T");
    const Client client = greeted();
    struct Share {
        std::string line;
        std::size_t most;
    };
    for (const auto& [word, most] : {Share{"link # A T I", 64}, Share{"listen W#", 16},
                                     Share{"register M#", 16}, Share{"watch T#", 16}}) {
        std::vector<std::string> answers;
        for (std::size_t n = 1; n <= most + 1; ++n) {
            std::string line = word;
            answers = client.say(line.replace(line.find('#'), 1, std::to_string(n)));
            if (n <= most) {
                EXPECT_THAT(answers, testing::Not(testing::Contains(HasSubstr("error")))) << line;
            }
            if (n == bridge::Session::kMostLinkRequests) live(client, bridge::Session::kShareTime);
        }
        EXPECT_THAT(answers, ElementsAre(HasSubstr("error too\\smany"))) << word;
        live(client, bridge::Session::kShareTime);
    }
    // And all that in its time.
    std::vector<std::string> answers;
    for (std::size_t n = 0; n <= bridge::Session::kMostLinkRequests; ++n)
        answers = client.say("unlink 1\nlink 1 A T I");
    EXPECT_THAT(answers, ElementsAre(HasSubstr("error too\\smuch")));
    for (int n = 0; n <= bridge::Session::kMostRequests; ++n)
        answers = client.say("watch T1");
    EXPECT_THAT(answers, ElementsAre(HasSubstr("error too\\smuch")));
    live(client, bridge::Session::kShareTime);
    EXPECT_THAT(client.say("link 1 A T I"), testing::Contains("opened 1"));
}

TEST_F(BridgeServer, ClientsHaveTheirLinksInTurn) {
    // Servers that take their time: what was asked of them is answered when the test says so.
    class SlowLinks : public platform::DdeLinks {
      public:
        std::unique_ptr<platform::DdeLink> open(const std::string& topic, const std::string&,
                                                platform::DdeEvents events) override {
            asked.emplace_back(topic, std::move(events));
            return nullptr;
        }
        std::vector<std::pair<std::string, platform::DdeEvents>> asked;
        /// The topics that were asked for since the last call, one letter each; none of them is there.
        std::string fail() {
            std::string topics;
            for (const auto& [topic, events] : std::exchange(asked, {})) {
                topics += topic.front();
                events.failed();
            }
            return topics;
        }
    };
    SlowLinks slow;
    start({}, slow);
    const Client greedy = greeted();
    const Client second = greeted();
    const Client third = greeted();
    const auto askFor = [](const Client& client, const std::string& topic, int from, int to) {
        for (int id = from; id <= to; ++id)
            client.peer->send("link " + std::to_string(id) + " " + topic + " T I\n");
    };
    askFor(greedy, "a", 1, 6);
    askFor(second, "b", 1, 4);
    EXPECT_EQ(slow.asked.size(), bridge::LinkTurns::kMost);
    // Whoever comes last has the next turn, before those who have had theirs.
    askFor(third, "c", 1, 1);
    EXPECT_EQ(slow.fail(), "aabb");
    EXPECT_THAT(slow.fail(), testing::UnorderedElementsAre('a', 'a', 'b', 'c'));
    // A link that is not wanted any more gives its turn away, and so does a client that goes.
    askFor(second, "b", 11, 13);
    EXPECT_EQ(slow.asked.size(), bridge::LinkTurns::kMost);
    greedy.peer->close();
    EXPECT_EQ(slow.asked.size(), bridge::LinkTurns::kMost);
    askFor(third, "c", 2, 4);
    EXPECT_EQ(slow.asked.size(), bridge::LinkTurns::kMost + 2);
    third.say("unlink 2");
    EXPECT_EQ(slow.asked.size(), bridge::LinkTurns::kMost + 3);
    // Whose turn does not come in its time is told so.
    third.lines();
    clock_.advance(bridge::Session::kLinkDeadline + bridge::Session::kTick);
    EXPECT_THAT(third.lines(), testing::IsSupersetOf({HasSubstr("failed 3 "), HasSubstr("failed 4 ")}));
    EXPECT_EQ(state_.links, 0);
}

TEST_F(BridgeServer, MessagesOfAllTimesHaveAnEnd) {
    start();
    // The system never forgets a registered message: neither does the bridge, whoever asks.
    std::size_t registered = 0;
    std::vector<std::string> answers;
    for (int client = 0; client < 5; ++client) {
        const Client one = greeted();
        for (int n = 0; n < 16 && answers.empty(); ++n, ++registered)
            answers = one.say("register M" + std::to_string(registered));
        one.peer->close();
    }
    EXPECT_THAT(answers, ElementsAre(HasSubstr("error too\\smany")));
    EXPECT_EQ(registered, bridge::RegisteredMessages::kMost + 1);
    EXPECT_THAT(greeted().say("register M0"), IsEmpty());
    // Twinstep's own finds its place all the same, and takes it from nobody.
    EXPECT_THAT(greeted().say("register Logger32\nregister M0"), IsEmpty());
    EXPECT_THAT(greeted().say("register Other"), ElementsAre(HasSubstr("error too\\smany")));
}

TEST_F(BridgeServer, WhatAClientHadEndsWithIt) {
    start();
    links_.run("A|T");
    station_.showWindow("Logger32", 50);
    for (int way = 0; way < 3; ++way) {
        const Client client = greeted();
        client.say("link 1 A T I\nlisten Form1\nregister Logger32\nwatch Logger32\n"
                   "post 50 Logger32 3 @Form1");
        const long own = station_.takePosted().at(0).lParam;
        ASSERT_TRUE(station_.hooked(own));
        if (way == 0) client.peer->close();
        if (way == 1) clock_.advance(bridge::kSilenceLimit);
        if (way == 2) server_.reset();
        EXPECT_FALSE(station_.hooked(own)) << way;
        EXPECT_TRUE(client.peer->closed()) << way;
        client.lines();
        links_.poke("A|T", "I", "x");
        EXPECT_THAT(client.lines(), IsEmpty()) << way;
        if (way < 2) {
            EXPECT_EQ(state_, bridge::State{});
        }
    }
}

TEST_F(BridgeServer, PingsAndGivesUpWhoIsSilent) {
    start();
    const Client client = greeted();
    const Client silent = connect(); // does not even greet
    client.lines();
    clock_.advance(bridge::kPingInterval);
    EXPECT_THAT(client.lines(), ElementsAre("ping 1"));
    EXPECT_THAT(client.say("ping a\\sb"), ElementsAre("pong a\\sb"));
    live(client, 4000);
    EXPECT_TRUE(silent.peer->closed());
    live(client, 20000);
    EXPECT_FALSE(client.peer->closed());
    clock_.advance(bridge::kSilenceLimit - bridge::Session::kTick);
    EXPECT_FALSE(client.peer->closed());
    clock_.advance(bridge::Session::kTick);
    EXPECT_TRUE(client.peer->closed());
}

TEST_F(BridgeServer, WhoTakesNothingIsDroppedAndTheOthersAreServed) {
    start();
    links_.run("A|T");
    const Client slow = greeted();
    const Client client = greeted();
    client.say("link 1 A T I");
    slow.say("link 1 A T I");
    slow.peer->take(10);
    const std::string text(1000, 'x');
    links_.poke("A|T", "I", text);
    EXPECT_EQ(slow.peer->takeReceived(), "changed 1 ");
    slow.peer->take(5);
    EXPECT_EQ(slow.peer->takeReceived(), "xxxxx");
    slow.peer->take(100000);
    EXPECT_THAT(slow.peer->takeReceived(), AllOf(testing::SizeIs(text.size() - 5 + 1), EndsWith("x\n")));

    slow.peer->take(0);
    for (std::size_t sent = 0; sent <= bridge::Server::kMostUnsent; sent += text.size())
        links_.poke("A|T", "I", text);
    clock_.advance(bridge::Session::kTick);
    EXPECT_TRUE(slow.peer->closed());
    EXPECT_FALSE(client.peer->closed());
    EXPECT_EQ(bridge::toText(state_), "1 controller, 1 link");
}

TEST_F(BridgeServer, WhoSendsAFloodIsDropped) {
    start();
    struct Flood {
        std::string line;
        std::size_t inASecond; // lines
        std::string why;
    };
    for (const auto& [line, most, why] :
         {Flood{std::string(1023, 'x') + "\n", bridge::Server::kMostInput / 1024, "sends too much"},
          Flood{"ping 1\n", bridge::Session::kMostLines, "too many lines"},
          Flood{"x\n", bridge::Session::kMostRefusals, "too many wrong lines"}}) {
        const Client client = greeted();
        clock_.advance(1000);
        for (int second = 0; second < 3; ++second) {
            for (std::size_t sent = 0; sent < most; ++sent)
                client.peer->send(line);
            EXPECT_FALSE(client.peer->closed()) << why;
            clock_.advance(1000);
        }
        std::string all;
        for (std::size_t sent = 0; sent < most + 1; ++sent)
            all += line;
        client.peer->send(all);
        EXPECT_TRUE(client.peer->closed()) << why;
        EXPECT_THAT(log_, testing::Contains(HasSubstr(why)));
    }
}

TEST_F(BridgeServer, WhoDoesNotGreetInTimeIsDroppedHoweverMuchHeSays) {
    start();
    const Client slow = connect();
    for (int passed = 0; passed < bridge::kSilenceLimit; passed += 1000) {
        EXPECT_FALSE(slow.peer->closed());
        slow.peer->send("x");
        clock_.advance(1000);
    }
    EXPECT_TRUE(slow.peer->closed());
    EXPECT_THAT(log_, testing::Contains(HasSubstr("did not greet")));
}

TEST_F(BridgeServer, OnePeerLeavesPlacesForOthers) {
    start({"192.168.1.20", "192.168.1.21"});
    std::vector<Client> clients;
    for (int n = 0; n < bridge::Server::kMostOfOnePeer; ++n)
        clients.push_back(connect("192.168.1.20"));
    EXPECT_FALSE(clients.back().peer->closed());
    EXPECT_THAT(connect("192.168.1.20").lines(), ElementsAre("error too\\smany\\sclients"));
    EXPECT_FALSE(connect("192.168.1.21").peer->closed());
    clients[0].peer->close();
    EXPECT_FALSE(connect("192.168.1.20").peer->closed());
}

TEST_F(BridgeServer, RefusesStrangersAndTheNinthClient) {
    start({"192.168.1.20"});
    // This computer itself, by the address that others know it by.
    EXPECT_FALSE(connect("192.168.1.30", "192.168.1.30").peer->closed());
    EXPECT_TRUE(connect("192.168.1.30", "127.0.0.1").peer->closed());
    EXPECT_TRUE(connect("192.168.1.21").peer->closed());
    EXPECT_TRUE(connect("192.168.1.2").peer->closed());
    EXPECT_EQ(connect("192.168.1.21").peer->takeReceived(), "");
    std::vector<Client> clients = {connect("192.168.1.20"), connect("127.0.0.2")};
    while (clients.size() < bridge::Server::kMostClients - 1)
        clients.push_back(connect());
    EXPECT_FALSE(clients[0].peer->closed());
    const Client ninth = connect();
    EXPECT_THAT(ninth.lines(), ElementsAre("error too\\smany\\sclients"));
    EXPECT_TRUE(ninth.peer->closed());
    clients[3].peer->close();
    EXPECT_FALSE(connect().peer->closed());
}

TEST_F(BridgeServer, APortThatIsTakenIsSaid) {
    tcp_.occupy(bridge::kPort);
    try {
        start();
        FAIL() << "it listens";
    } catch (const runtime::ObjectError& error) {
        EXPECT_THAT(error.what(), HasSubstr("another program has this port"));
    }
}

TEST_F(BridgeServer, WhatComesFromOutsideIsPrintableInTheLog) {
    start();
    const Client client = connect();
    client.say("hello 1 evil\\n\x1b[2J name\x7f");
    EXPECT_THAT(log_, testing::Contains(EndsWith("is evil??[2J name?")));
}

} // namespace
