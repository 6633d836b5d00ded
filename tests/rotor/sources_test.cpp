#include "rotor/sources.h"
#include "runtime/errors.h"
#include "tests/desk.h"

namespace {

using namespace std::chrono_literals;
using rotor::Direction;
using rotor::Hold;

struct Program : rotor::TrackingSource {
    Program(std::string called, Hold kind) : called_(std::move(called)), kind_(kind) {}
    std::string name() const override { return called_; }
    bool there() const override { return there_; }
    Hold hold() const override { return kind_; }

    std::string called_;
    Hold kind_;
    bool there_ = true;
};

class SourcesTest : public Desk {
  protected:
    void SetUp() override { start(); }
    void sends(const Program& program, const char* azimuth, const char* elevation) {
        sources_->offer(program, azimuth, elevation);
    }
    std::string holder() { return sources_->holder() ? sources_->holder()->name() : "nobody"; }

    Program lines_{"lines", Hold::kWhileHeard}, link_{"link", Hold::kWhileThere},
        commands_{"commands", Hold::kUntilDone};
    std::optional<rotor::Sources> sources_;
};

TEST_F(SourcesTest, TheFirstHoldsTheTargetUntilItIsSilent) {
    sources_.emplace(f());
    int targets = 0;
    sources_->onTarget = [&] { ++targets; };
    sends(lines_, "10", "20");
    sends(commands_, "50", "60");
    EXPECT_EQ(holder(), "lines");
    EXPECT_EQ(f().lblAzRx.Caption, "010.00");
    sources_->pass(9999ms);
    sources_->heard(commands_); // not the holder's word
    sends(lines_, "10", "20");  // the same values are no silence
    sources_->pass(9999ms);
    EXPECT_FALSE(sources_->lost());
    EXPECT_FALSE(sources_->isFreeFor(commands_));
    sources_->pass(1ms);
    EXPECT_TRUE(sources_->lost());
    EXPECT_EQ(sources_->target(), std::nullopt);
    sends(commands_, "50", "60,5");
    EXPECT_EQ(sources_->target(), (Direction{50, 60.5}));
    EXPECT_FALSE(sources_->lost());
    EXPECT_EQ(targets, 3);
}

TEST_F(SourcesTest, ACommandStandsAndALinkHoldsWhileItIsOpen) {
    sources_.emplace(f());
    sends(commands_, "50", "60");
    commands_.there_ = false;
    sources_->pass(1h);
    EXPECT_EQ(sources_->target(), (Direction{50, 60}));
    sends(link_, "1", "2"); // a command does not give way
    EXPECT_EQ(holder(), "commands");
    sources_->forget();
    sends(link_, "1", "2");
    sources_->pass(1h);
    sends(lines_, "3", "4");
    EXPECT_EQ(holder(), "link");
    link_.there_ = false;
    sources_->pass(0ms);
    EXPECT_TRUE(sources_->lost());
    sends(commands_, "5", "6");
    sources_->drop(lines_);
    EXPECT_EQ(holder(), "commands");
    sources_->drop(commands_);
    EXPECT_EQ(holder(), "nobody");
    EXPECT_FALSE(sources_->lost());
}

TEST_F(SourcesTest, OffsetsAreAddedAndNoTargetComesFromNoNumber) {
    sources_.emplace(f());
    sources_->complete(lines_); // the labels are empty
    EXPECT_EQ(holder(), "nobody");
    f().HScOffsetA.set(150);
    f().HScOffsetB.set(-25);
    sends(lines_, "12.5", "7");
    EXPECT_EQ(sources_->target(), (Direction{14, 6.75}));
    EXPECT_THROW(sends(lines_, "12.5", "x"), runtime::RunTimeError);
    EXPECT_EQ(sources_->target(), (Direction{14, 6.75}));
    EXPECT_EQ(f().lblRealAz.Caption, "12.5");
    for (const auto& [azimuth, elevation] :
         {std::pair("1e30", "7"), {"-730", "7"}, {"12", "999"}, {"12", "-181"}}) {
        sends(lines_, azimuth, elevation);
        EXPECT_EQ(sources_->target(), (Direction{14, 6.75})) << azimuth << " " << elevation;
    }
}

} // namespace
