#include "form/form1.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"
#include "platform/simulated/tcp_servers.h"
#include "rotor/rotctld_server.h"
#include "rotor/rotctld_source.h"
#include "runtime/errors.h"

#include <gmock/gmock.h>

using rotor::Direction;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr int kPort = 4533;
constexpr const char* kHere = "192.168.1.30";

/// Another program that follows the sky.
struct LineServer : rotor::TrackingSource {
    std::string name() const override { return "lines"; }
    bool there() const override { return true; }
    rotor::Hold hold() const override { return rotor::Hold::kWhileHeard; }
};

/// The rotor's side, as a list of what it was told.
struct Commands : rotor::RotorCommands {
    Direction position() const override { return at; }
    bool following() const override { return ticked; }
    void turn(rotor::Axis axis, int direction, bool fast) override {
        if (broken) throw runtime::ObjectError("the port has gone");
        told.push_back(std::string(axis == rotor::Axis::kAzimuth ? "az" : "el") +
                       (direction == form::kForward ? "+" : "-") + (fast ? " fast" : " slow"));
    }
    void halt() override { told.emplace_back("halt"); }
    void park() override { told.emplace_back("park"); }
    std::vector<std::string> take() { return std::exchange(told, {}); }

    Direction at{123.456, 45};
    bool ticked = true;
    bool broken = false;
    std::vector<std::string> told;
};

class Rotctld : public ::testing::Test {
  protected:
    using Peer = std::shared_ptr<simulated::TcpServers::Peer>;

    void SetUp() override {
        form.HScOffsetA.set(0);
        form.HScOffsetB.set(0);
        source.clientThere = [this] { return server.clients() > 0; };
        server.listen({"0.0.0.0", kPort, {"192.168.1.20"}});
    }
    Peer connect(const char* peer = "127.0.0.1") { return tcp.connect(kPort, {peer, kHere}); }
    static std::string ask(const Peer& peer, const std::string& line) {
        peer->send(line + "\n");
        return peer->takeReceived();
    }
    std::string target() const {
        if (!sources.target()) return "none";
        return std::to_string(static_cast<int>(sources.target()->azimuth)) + " " +
               std::to_string(static_cast<int>(sources.target()->elevation));
    }

    simulated::Clock clock;
    simulated::DdeLinks links;
    simulated::TcpServers tcp;
    form::Form1 form{clock, links};
    rotor::Sources sources{form};
    LineServer lines;
    Commands commands;
    rotor::rotctld::Source source{form, sources, commands, "1.2.3"};
    rotor::rotctld::Server server{form, tcp, clock, source};
};

TEST_F(Rotctld, AnswersAsTheProtocolWantsIt) {
    const Peer peer = connect();
    struct Case {
        const char* line;
        const char* answer;
    };
    for (const Case& each : {
             Case{"p", "123.46\n45.00\n"},
             {"+p", "get_pos:\nAzimuth: 123.46\nElevation: 45.00\nRPRT 0\n"},
             {";\\get_pos", "get_pos:;Azimuth: 123.46;Elevation: 45.00;RPRT 0\n"},
             {"|P 10 20", "set_pos: 10 20|RPRT 0\n"},
             {" P  359,9\t-3.5 ", "RPRT 0\n"},
             {"\\set_pos 1e1 .5", "RPRT 0\n"},
             {"pP 1 2", "123.46\n45.00\nRPRT 0\n"},
             {"p # and no more: P 1 2", "123.46\n45.00\n"},
             {"+P abc 20", "set_pos: abc 20\nRPRT -1\n"},
             {"P 10", "RPRT -1\n"},
             {"P nan 20", "RPRT -1\n"},
             {"P inf 20", "RPRT -1\n"},
             {"P 10x 20", "RPRT -1\n"},
             {"P 451 20", "RPRT -1\n"},
             {"P 10 181", "RPRT -1\n"},
             {"P 10 20 30", "RPRT 0\n"},
             {"M 3 50", "RPRT -1\n"},
             {"M left 50", "RPRT -1\n"},
             {"M 2", "RPRT -1\n"},
             {"M 2 x", "RPRT -1\n"},
             {"R 1", "RPRT -4\n"},
             {"R x", "RPRT -1\n"},
             {"_", "Twinstep 1.2.3\n"},
             {",\\get_info", "get_info:,Info: Twinstep 1.2.3,RPRT 0\n"},
             {"\\dump_state", "1\n2\nmin_az=-180.000000\nmax_az=450.000000\nmin_el=-90.000000\n"
                              "max_el=180.000000\nsouth_zero=0\nrot_type=AzEl\ndone\n"},
             {"C token value", "RPRT -4\n"},
             {"get_pos", "RPRT -4\n"},
             {"\\pause 3", "RPRT -4\n"},
             {"\x80\xff", "RPRT -4\n"},
             {"", ""},
             {" \r", ""},
             {"+", ""},
             {"# p", ""},
         }) {
        EXPECT_EQ(ask(peer, each.line), each.answer) << each.line;
    }
    EXPECT_THAT(ask(peer, "1"), HasSubstr("Max Azimuth:\t\t450.00\n"));
    EXPECT_THAT(commands.take(), IsEmpty());
    EXPECT_FALSE(peer->closed());
    EXPECT_EQ(ask(peer, "p;q p"), "123.46\n45.00\n");
    EXPECT_TRUE(peer->closed());
}

TEST_F(Rotctld, TakesLinesInAnyPiecesUpToTheirLongest) {
    const Peer peer = connect();
    for (const char c : std::string("P 10 20\r\n"))
        peer->send({&c, 1});
    EXPECT_EQ(peer->takeReceived(), "RPRT 0\n");
    EXPECT_EQ(ask(peer, "P 30" + std::string(1018, ' ') + "40"), "RPRT 0\n");
    EXPECT_EQ(ask(peer, "P 50" + std::string(1019, ' ') + "60"), "RPRT -1\n");
    EXPECT_EQ(ask(peer, std::string(100'000, 'S')), "RPRT -1\n");
    EXPECT_EQ(target(), "30 40");
    peer->send("P 70 80"); // cut off: its numbers may be
    peer->close();
    EXPECT_EQ(target(), "30 40");
}

TEST_F(Rotctld, ATargetIsKeptAndTheLastOneWins) {
    Peer first = connect();
    form.HScOffsetA.set(150);
    form.HScOffsetB.set(-100);
    EXPECT_EQ(ask(first, "P 10 20"), "RPRT 0\n");
    EXPECT_EQ(target(), "11 19");
    EXPECT_EQ(ask(first, "p"), "121.96\n46.00\n");
    first->close();
    EXPECT_EQ(server.clients(), 0U);
    sources.pass(std::chrono::hours(1));
    EXPECT_EQ(target(), "11 19");
    const Peer second = connect();
    ask(second, "P -90 120"); // over the top: 90, 60
    EXPECT_EQ(target(), "91 59");
    EXPECT_THAT(commands.take(), IsEmpty());
    EXPECT_EQ(ask(second, "S"), "RPRT 0\n");
    EXPECT_EQ(target(), "none");
    EXPECT_THAT(commands.take(), ElementsAre("halt"));
}

TEST_F(Rotctld, WithoutFollowingATargetWaitsAndNothingTurns) {
    const Peer peer = connect();
    commands.ticked = false;
    EXPECT_EQ(ask(peer, "P 10 20"), "RPRT 0\n");
    EXPECT_EQ(target(), "10 20");
    EXPECT_EQ(ask(peer, "M 2 100"), "RPRT -11\n");
    EXPECT_EQ(ask(peer, "+K"), "park:\nRPRT -11\n");
    EXPECT_EQ(target(), "10 20");
    EXPECT_THAT(commands.take(), IsEmpty());
}

TEST_F(Rotctld, WhileAnotherSourceHoldsTheTargetNothingIsTaken) {
    const Peer peer = connect();
    sources.offer(lines, "1", "2");
    for (const char* line : {"P 10 20", "M 2 10", "K"})
        EXPECT_EQ(ask(peer, line), "RPRT -11\n") << line;
    EXPECT_THAT(commands.take(), IsEmpty());
    EXPECT_EQ(ask(peer, "S"), "RPRT 0\n"); // a stop always stops
    EXPECT_THAT(commands.take(), ElementsAre("halt"));
    EXPECT_EQ(target(), "1 2");
    sources.pass(std::chrono::seconds(10));
    EXPECT_EQ(ask(peer, "P 10 20"), "RPRT 0\n");
    // Asking is a word, too: the client still holds the target 10 s after it has set it.
    sources.pass(std::chrono::seconds(9));
    ask(peer, "p");
    sources.pass(std::chrono::seconds(9));
    EXPECT_FALSE(sources.offer(lines, "1", "2"));
}

TEST_F(Rotctld, AMoveLastsAsLongAsItsClientSpeaks) {
    const Peer peer = connect(), other = connect();
    ask(peer, "P 10 20");
    EXPECT_EQ(ask(peer, "M 2 49"), "RPRT 0\n");
    EXPECT_EQ(target(), "none");
    EXPECT_EQ(ask(peer, "M CCW 50"), "RPRT 0\n");
    EXPECT_EQ(ask(peer, "+M 16 -1"), "move: 16 -1\nRPRT 0\n");
    EXPECT_EQ(ask(peer, "M DOWN 100"), "RPRT 0\n");
    EXPECT_THAT(commands.take(), ElementsAre("el+ slow", "az- fast", "az+ slow", "el- fast"));
    clock.advance(1999);
    ask(peer, "p");
    clock.advance(1999);
    ask(other, "p");
    EXPECT_THAT(commands.take(), IsEmpty());
    clock.advance(1);
    EXPECT_THAT(commands.take(), ElementsAre("halt"));
    clock.advance(10000);
    EXPECT_THAT(commands.take(), IsEmpty());

    ask(other, "M 8 10");
    other->close();
    EXPECT_THAT(commands.take(), ElementsAre("az- slow", "halt"));

    // What has replaced the move is not stopped with it.
    for (const char* next : {"P 10 20", "K"}) {
        ask(peer, "M 8 10");
        commands.take();
        ask(peer, next);
        clock.advance(5000);
        EXPECT_THAT(commands.take(), ::testing::Not(::testing::Contains("halt"))) << next;
    }
    ask(peer, "M 8 10");
    commands.ticked = false; // the user has stopped it
    commands.take();
    clock.advance(5000);
    EXPECT_THAT(commands.take(), IsEmpty());
}

TEST_F(Rotctld, WhatFailsIsAnswered) {
    const Peer peer = connect();
    int errors = 0;
    form.onError = [&](const auto&) { ++errors; };
    commands.broken = true;
    EXPECT_EQ(ask(peer, "M 2 10"), "RPRT -6\n");
    EXPECT_EQ(errors, 1);
    EXPECT_EQ(ask(peer, "p"), "123.46\n45.00\n");
    // The box that says so is open while more comes, and while the client goes.
    form.onError = [&](const auto&) { peer->send("_\n"); };
    EXPECT_EQ(ask(peer, "M 2 10\np"), "RPRT -6\n123.46\n45.00\nTwinstep 1.2.3\n");
    form.onError = [&](const auto&) { peer->close(); };
    ask(peer, "M 2 10\np");
    EXPECT_TRUE(peer->closed());
    EXPECT_EQ(server.clients(), 0U);
}

TEST_F(Rotctld, ABrowserIsShownTheDoor) {
    for (const char* request : {"GET / HTTP/1.1\r\nS\nP 10 20\n", "post /M HTTP/1.1\r\n\r\nP 10 20\n", "PUT ",
                                "Host: 127.0.0.1:4533\r\nP 10 20\n", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"}) {
        for (const bool slowly : {false, true}) {
            const Peer peer = connect();
            const std::string all(request);
            if (!slowly) peer->send(all);
            for (std::size_t at = 0; slowly && at < all.size(); ++at)
                peer->send(all.substr(at, 1));
            EXPECT_TRUE(peer->closed()) << request;
            EXPECT_EQ(peer->takeReceived(), "");
        }
    }
    const Peer endless = connect();
    endless->send("GET /" + std::string(5000, 'x') + "\r\nP 10 20\n");
    EXPECT_TRUE(endless->closed());
    EXPECT_EQ(target(), "none");
    EXPECT_THAT(commands.take(), IsEmpty());
}

TEST_F(Rotctld, ManyClientsAreServedAndStrangersAreNot) {
    EXPECT_TRUE(connect("192.168.1.21")->closed());
    const Peer friendly = connect("192.168.1.20"), self = connect(kHere);
    EXPECT_FALSE(friendly->closed() || self->closed());
    std::vector<Peer> more;
    for (int n = 2; n < 16; ++n)
        more.push_back(connect());
    EXPECT_TRUE(connect()->closed());
    EXPECT_TRUE(source.there());
    // One that asks and does not read is dropped; the others hear their answers.
    more[0]->take(10);
    for (int n = 0; n < 10000 && !more[0]->closed(); ++n)
        more[0]->send("1\n");
    EXPECT_TRUE(more[0]->closed());
    more[1]->take(3);
    EXPECT_EQ(ask(more[1], "p"), "123");
    more[1]->take(100);
    EXPECT_EQ(more[1]->takeReceived(), ".46\n45.00\n");
    EXPECT_EQ(ask(more[2], "p"), "123.46\n45.00\n");
    EXPECT_FALSE(connect()->closed()); // in the place of the dropped one

    server.listen({"0.0.0.0", kPort, {}});
    EXPECT_TRUE(more[2]->closed());
    EXPECT_FALSE(source.there());
    EXPECT_TRUE(connect("192.168.1.20")->closed());
    server.close();
    tcp.occupy(kPort);
    server.listen({"0.0.0.0", kPort, {}});
    EXPECT_THAT(server.failure(), HasSubstr("another program"));
    server.close();
    EXPECT_EQ(server.failure(), "");
}

} // namespace
