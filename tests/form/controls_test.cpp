#include "form/form1.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace form {
namespace {

using namespace std::chrono_literals;

struct Counter : ControlObserver {
    int changes = 0;
    void changed(Control&) override { ++changes; }
    void focusWanted(Control&) override {}
    void frontWanted(Control&) override {}
};

TEST(Property, NotifiesOnlyOnARealChange) {
    Form window("w");
    CheckBox box(window, "box");
    Counter counter;
    box.observe(&counter);
    int clicks = 0;
    box.Click.attach([&] { ++clicks; });
    box.Value = 1;
    box.Value = 1;
    EXPECT_EQ(counter.changes, 1);
    EXPECT_EQ(clicks, 1);
    box.Value.load(0); // drawn, but no event
    EXPECT_EQ(counter.changes, 2);
    EXPECT_EQ(clicks, 1);
}

TEST(Event, ErrorsStopAtTheBoundaryOnlyFromOutside) {
    Form window("w");
    std::string caught;
    window.onError = [&](const std::exception& error) { caught = error.what(); };
    Button button(window, "button");
    button.Enabled = false;
    button.Click.attach([] { throw std::runtime_error("boom"); });
    EXPECT_THROW(button.Click.raise(), std::runtime_error);
    button.Click.fire();
    EXPECT_EQ(caught, "boom");
}

TEST(ScrollBar, KeepsItsRange) {
    Form window("w");
    ScrollBar bar(window, "bar", {1, 32});
    int changes = 0;
    bar.Change.attach([&] { ++changes; });
    bar.userScroll(40);
    EXPECT_EQ(bar.Value, 32);
    bar.load(0);
    EXPECT_EQ(bar.Value, 1);
    EXPECT_EQ(changes, 1);
}

TEST(Timer, RestartsOnANewIntervalButNotOnEnablingAgain) {
    simulated::Clock clock;
    Form window("w");
    Timer timer(window, "timer", clock, 100);
    std::vector<std::chrono::nanoseconds> ticks;
    timer.Tick.attach([&] { ticks.push_back(clock.now()); });
    timer.Enabled = true;
    clock.advance(60);
    timer.Enabled = true;
    clock.advance(50);
    EXPECT_EQ(ticks, (std::vector<std::chrono::nanoseconds>{100ms}));
    timer.Interval = 50; // at 110
    clock.advance(100);
    EXPECT_EQ(ticks, (std::vector<std::chrono::nanoseconds>{100ms, 160ms, 210ms}));
    timer.Interval = 0;
    clock.advance(1000);
    EXPECT_EQ(ticks.size(), 3U);
}

TEST(Timer, KeepsAFinerPeriodUntilIntervalOrEnabledChanges) {
    simulated::Clock clock;
    Form window("w");
    Timer timer(window, "timer", clock, 10);
    std::vector<std::chrono::nanoseconds> ticks;
    timer.Tick.attach([&] {
        ticks.push_back(clock.now());
        if (ticks.size() == 2) timer.setPeriod(1250us);
    });
    timer.setPeriod(1ms);
    EXPECT_EQ(timer.period(), 0ns) << "it stands";
    timer.Enabled = true;
    EXPECT_EQ(timer.period(), 10ms);
    timer.setPeriod(12'500us);
    timer.Interval = 10; // no change
    clock.advance(28);
    EXPECT_EQ(ticks, (std::vector<std::chrono::nanoseconds>{12'500us, 25ms, 26'250us, 27'500us}));
    timer.Interval = 20; // at 28
    clock.advance(20);
    EXPECT_EQ(ticks.back(), 48ms);
    timer.setPeriod(1ms);
    timer.Enabled = false;
    timer.Enabled = true;
    clock.advance(20);
    EXPECT_EQ(ticks.back(), 68ms);
    EXPECT_EQ(ticks.size(), 6U);
}

TEST(LinkLabel, TellsItsEndFromEitherSide) {
    simulated::DdeLinks links;
    Form window("w");
    LinkLabel label(window, "label", links);
    std::string events;
    label.LinkOpen.attach([&] { events += 'o'; });
    label.LinkClose.attach([&] { events += 'c'; });
    label.LinkError.attach([&] { events += 'e'; });
    label.LinkTopic = "APP|TOPIC";
    label.LinkItem = "ITEM";
    label.LinkMode = LinkLabel::kAutomatic;
    EXPECT_EQ(events, "e");
    EXPECT_EQ(label.LinkMode, LinkLabel::kNone);

    links.run("APP|TOPIC");
    label.LinkMode = LinkLabel::kAutomatic;
    links.poke("APP|TOPIC", "ITEM", "14.025");
    EXPECT_EQ(label.Caption, "14.025");
    links.quit("APP|TOPIC");
    EXPECT_EQ(events, "eoc");

    links.run("APP|TOPIC");
    label.LinkMode = LinkLabel::kAutomatic;
    label.LinkMode = LinkLabel::kNone;
    EXPECT_EQ(events, "eococ");
    links.poke("APP|TOPIC", "ITEM", "21.3");
    EXPECT_EQ(label.Caption, "14.025");
}

TEST(Form1, HasNoTwoControlsOfOneName) {
    simulated::Clock clock;
    simulated::DdeLinks links;
    Form1 form(clock, links);
    std::set<std::string> names;
    for (const Control* control : form.controls())
        EXPECT_TRUE(names.insert(control->name()).second) << control->name();
}

} // namespace
} // namespace form
