#include "platform/simulated/clock.h"
#include "platform/simulated/tcp_clients.h"
#include "radio/rigctld.h"

#include <gmock/gmock.h>

namespace radio {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RigctldTest : public testing::Test {
  protected:
    RigctldTest() { tcp_.listen(Rigctld::kDefaultPort); }

    /// Answers each request of `script` in turn; fails where another one comes.
    void converse(const std::vector<std::pair<std::string, std::string>>& script) {
        for (const auto& [request, answer] : script) {
            EXPECT_EQ(tcp_.takeSent(), request + "\n");
            if (!answer.empty()) tcp_.send(answer + "\n");
        }
    }
    void connect(const std::string& vfoMode = "0") {
        tcp_.answer();
        converse({{"\\chk_vfo", vfoMode}});
    }
    void nextTick() { clock_.advance(500); }

    simulated::Clock clock_;
    simulated::TcpClients tcp_;
    std::vector<RigReading> told_;
    std::unique_ptr<Rigctld> rig_ =
        std::make_unique<Rigctld>(tcp_, clock_, "shack", Rigctld::kDefaultPort,
                                  [this](const RigReading& reading) { told_.push_back(reading); });
};

TEST_F(RigctldTest, AsksTwiceASecondAndTellsChanges) {
    connect();
    converse({{"f", "14025500"}, {"s", "0\nVFOA"}, {"t", "0"}});
    EXPECT_EQ(tcp_.takeSent(), "");
    nextTick();
    converse({{"f", "14025500"}, {"s", "0\nVFOA"}, {"t", "1"}});
    nextTick();
    converse({{"f", "14025500.000000\r"}, {"s", "0\nVFOA"}, {"t", "1"}});
    // Only while split is on the other frequency is asked for.
    nextTick();
    converse({{"f", "14025500"}, {"s", "1\nVFOB"}, {"i", "14195000"}, {"t", "0"}});
    EXPECT_THAT(told_, ElementsAre(RigReading{.hertz = 14025500},
                                   RigReading{.hertz = 14025500, .transmitting = true},
                                   RigReading{.hertz = 14195000}));
}

TEST_F(RigctldTest, LeavesOutWhatTheServerDoesNotKnow) {
    connect("RPRT 1");
    converse({{"f", "7050000"}, {"s", "RPRT -11"}, {"t", "RPRT -4"}});
    nextTick();
    converse({{"f", "7051000"}});
    EXPECT_THAT(told_, ElementsAre(RigReading{.hertz = 7050000}, RigReading{.hertz = 7051000}));
}

TEST_F(RigctldTest, AServerMayKnowTheFrequencyOnly) {
    // What comes to anything but "f": nothing, a closed connection, or words of its own.
    enum Manner { kSilent, kHangsUp, kOwnWords, kManners };
    for (int manner = 0; manner < kManners; ++manner) {
        rig_ = std::make_unique<Rigctld>(tcp_, clock_, "shack", Rigctld::kDefaultPort,
                                         [this](const RigReading& reading) { told_.push_back(reading); });
        told_.clear();
        for (int i = 0; i < 40; ++i) { // 20 s
            tcp_.answer();
            while (true) {
                const std::string request = tcp_.takeSent();
                if (request.empty()) break;
                if (request == "f\n") {
                    tcp_.send("7050000\n");
                } else if (manner == kHangsUp) {
                    tcp_.drop();
                } else if (manner == kOwnWords) {
                    tcp_.send("what?\n");
                }
            }
            nextTick();
        }
        ASSERT_FALSE(told_.empty()) << manner;
        if (manner == kOwnWords) {
            EXPECT_THAT(told_, ElementsAre(RigReading{.hertz = 7050000}));
            continue;
        }
        // Each is named, and asked once only.
        EXPECT_THAT(told_, ElementsAre(RigReading{.trouble = "rigctld does not answer \"\\chk_vfo\""},
                                       RigReading{.trouble = "rigctld does not answer \"s\""},
                                       RigReading{.trouble = "rigctld does not answer \"t\""},
                                       RigReading{.hertz = 7050000,
                                                  .unknown = "rigctld does not tell split and transmitting"}))
            << manner;
    }
    // After it was away it may be another one.
    rig_ = std::make_unique<Rigctld>(tcp_, clock_, "shack", Rigctld::kDefaultPort, [](const RigReading&) {});
    tcp_.takeSent();
    tcp_.answer();
    EXPECT_EQ(tcp_.takeSent(), "\\chk_vfo\n");
    clock_.advance(3500);
    tcp_.answer();
    EXPECT_EQ(tcp_.takeSent(), "f\n");
    tcp_.drop();
    tcp_.stopListening(Rigctld::kDefaultPort);
    clock_.advance(2000);
    tcp_.answer();
    tcp_.listen(Rigctld::kDefaultPort);
    clock_.advance(2000);
    connect();
}

TEST_F(RigctldTest, NamesTheVfoWhereTheDaemonWantsIt) {
    connect("CHKVFO 1");
    converse(
        {{"f currVFO", "7050000"}, {"s currVFO", "1\nVFOB"}, {"i currVFO", "RPRT -1"}, {"t currVFO", "0"}});
    EXPECT_THAT(told_, ElementsAre(RigReading{.hertz = 7050000}));
}

TEST_F(RigctldTest, SaysWhatFailsAndGoesOn) {
    connect();
    converse({{"f", "RPRT -5"}});
    const RigReading mute{.trouble = "the rig does not answer"};
    EXPECT_THAT(told_, ElementsAre(mute));
    nextTick();
    converse({{"f", "7050000"}, {"s", "0\nVFOA"}, {"t", "0"}});
    // No second request while one is open; a late answer still counts.
    nextTick();
    converse({{"f", ""}});
    clock_.advance(3000);
    EXPECT_EQ(tcp_.takeSent(), "");
    EXPECT_EQ(told_.back(), mute);
    tcp_.send("7060000\n");
    converse({{"s", "0\nVFOA"}, {"t", "0"}});
    EXPECT_EQ(told_.back(), RigReading{.hertz = 7060000});
    // One that never answers is left, and tried anew.
    nextTick();
    converse({{"f", ""}});
    clock_.advance(11000);
    EXPECT_EQ(told_.back().trouble, "rigctld does not answer");
    clock_.advance(2000);
    connect();
    converse({{"f", "7070000"}});
}

TEST_F(RigctldTest, ConnectsAgainAfterALoss) {
    tcp_.stopListening(Rigctld::kDefaultPort);
    tcp_.answer();
    const RigReading none{.trouble = "no rigctld at shack:4532"};
    EXPECT_THAT(told_, ElementsAre(none));
    clock_.advance(2000);
    EXPECT_EQ(tcp_.attempts(), 2);
    tcp_.answer();
    tcp_.listen(Rigctld::kDefaultPort);
    clock_.advance(2000);
    connect();
    converse({{"f", "7050000"}, {"s", "RPRT -11"}, {"t", "RPRT -11"}});
    tcp_.drop();
    EXPECT_THAT(told_, ElementsAre(none, RigReading{.hertz = 7050000}, none));
    // The new connection may be to another daemon.
    clock_.advance(2000);
    connect("1");
    converse({{"f currVFO", "7050000"}, {"s currVFO", ""}});
}

TEST_F(RigctldTest, NamesAnAddressAsItIsTyped) {
    rig_ = std::make_unique<Rigctld>(tcp_, clock_, "fe80::1", 99,
                                     [this](const RigReading& reading) { told_.push_back(reading); });
    tcp_.answer();
    EXPECT_EQ(told_.back().trouble, "no rigctld at [fe80::1]:99");
}

TEST_F(RigctldTest, TakesNoHarmFromWhatIsNoRigctld) {
    connect("HTTP/1.1 400 Bad Request");
    converse({{"f", "\n\n-5\n\nnan"}});
    EXPECT_FALSE(told_.empty());
    for (const RigReading& reading : told_)
        EXPECT_EQ(reading.hertz, std::nullopt);
    tcp_.send(std::string(2000, 'x'));
    EXPECT_EQ(told_.back().trouble, "what answers at this address is no rigctld");
    // It may be ended from inside what it tells.
    clock_.advance(2000);
    connect();
    rig_ = std::make_unique<Rigctld>(tcp_, clock_, "other", 1, [this](const RigReading&) { rig_.reset(); });
    tcp_.answer();
    EXPECT_EQ(rig_, nullptr);
    EXPECT_EQ(tcp_.clients(), 0U);
}

} // namespace
} // namespace radio
