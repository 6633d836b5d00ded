#include "runtime/step_schedule.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

using namespace std::chrono_literals;
using runtime::StepSchedule;

namespace {

/// Runs `count` ticks from time 0 on; tick n begins `lateness(n)` after the moment it was armed for.
template <class Lateness>
std::vector<StepSchedule::Time> run(StepSchedule& schedule, StepSchedule::Time interval, int count,
                                    Lateness lateness) {
    std::vector<StepSchedule::Time> began;
    schedule.start(0ns, interval);
    for (int n = 0; n < count; ++n) {
        began.push_back(schedule.next() + lateness(n));
        schedule.ticked(began.back());
    }
    return began;
}

StepSchedule::Time shortestGap(const std::vector<StepSchedule::Time>& ticks) {
    auto shortest = StepSchedule::Time::max();
    for (std::size_t n = 1; n < ticks.size(); ++n)
        shortest = std::min(shortest, ticks[n] - ticks[n - 1]);
    return shortest;
}

} // namespace

TEST(StepSchedule, LatenessOfEveryTickDoesNotSlowTheMean) {
    StepSchedule schedule;
    const auto ticks = run(schedule, 1ms, 1000, [](int n) { return std::chrono::microseconds(n % 90); });
    EXPECT_LT(ticks.back(), 1000ms + 90us);
    EXPECT_GE(shortestGap(ticks), 900us);
}

TEST(StepSchedule, BacklogIsMadeUpWithoutABurst) {
    StepSchedule schedule;
    // Nine intervals late once: made up within 90 ticks, each a tenth of the interval early.
    const auto ticks = run(schedule, 1ms, 101, [](int n) { return n == 4 ? 9ms : 0ms; });
    EXPECT_EQ(ticks[4], 14ms);
    EXPECT_EQ(ticks[5], 14ms + 900us);
    EXPECT_EQ(ticks[93], 94ms + 100us);
    EXPECT_EQ(ticks[94], 95ms);
    EXPECT_EQ(ticks[100], 101ms);
    EXPECT_EQ(shortestGap(ticks), 900us);
}

TEST(StepSchedule, StallBeyondTenIntervalsStartsAnew) {
    StepSchedule schedule;
    auto ticks = run(schedule, 2ms, 4, [](int n) { return n == 2 ? 20ms : 0ms; });
    EXPECT_EQ(ticks[3] - ticks[2], 1800us) << "ten intervals are still made up";

    ticks = run(schedule, 2ms, 5, [](int n) { return n == 2 ? 25ms : 0ms; });
    EXPECT_EQ(ticks[3] - ticks[2], 2ms) << "nothing is made up any more";
    EXPECT_EQ(ticks[4] - ticks[3], 2ms);

    schedule.start(5s, 3ms);
    EXPECT_EQ(schedule.next(), 5s + 3ms);
}

TEST(StepSchedule, SeveralStallsAreMadeUpTogetherUntilAHundredIntervalsHavePiledUp) {
    StepSchedule schedule;
    auto ticks = run(schedule, 1ms, 400, [](int n) { return n < 4 ? 8ms : 0ms; });
    EXPECT_EQ(ticks[399], 400ms);

    // A device that was too slow for the speed: a hundred intervals at most are made up, a tenth with each
    // tick.
    ticks = run(schedule, 1ms, 1300, [](int n) { return n < 200 ? 5ms : 0ms; });
    EXPECT_EQ(ticks[1299] - ticks[1298], 1ms);
}

TEST(StepSchedule, ATickThatIsHeldUpKeepsItsDistanceToTheNext) {
    StepSchedule schedule;
    schedule.start(0ns, 1ms);
    schedule.ticked(1ms);
    schedule.finished(1ms + 700us); // the motor may have moved only now
    EXPECT_GE(schedule.next(), 2ms + 590us);

    // A device that takes half of each interval must not slow the rate, once it is known to.
    schedule.start(0ns, 10ms);
    for (int n = 0; n < 200; ++n) {
        const auto began = schedule.next();
        schedule.ticked(began);
        schedule.finished(began + 5ms);
    }
    EXPECT_EQ(schedule.next(), 2010ms);
    const auto began = schedule.next();
    schedule.ticked(began);
    schedule.finished(began + 5ms);
    EXPECT_LE(schedule.next() - began, 10ms);
    // And when it is quick again, the next step still keeps away from the last slow one.
    EXPECT_GE(schedule.next(), began + 5ms + 4ms);
}

TEST(StepSchedule, ANewIntervalCountsFromTheMomentAtWhichTheLastTickWasDue) {
    const struct {
        const char* what;
        StepSchedule::Time interval, tick, changedAt, newInterval, next, afterThat;
    } cases[] = {
        {"on time, longer", 1ms, 1ms, 1010us, 2500us, 3500us, 6ms},
        {"on time, shorter by a nanosecond", 1ms, 1ms, 1010us, 999'999ns, 1'999'999ns, 2'999'998ns},
        {"late, made up", 1ms, 1040us, 1050us, 1300us, 2300us, 3600us},
        {"very late, made up without a burst", 1ms, 2ms, 2010us, 1300us, 2ms + 1170us, 2ms + 2340us},
        {"over already: at once, and on from there", 10ms, 10ms, 19ms, 1ms, 19ms, 20ms},
        {"before the first tick", 10ms, 0ms, 3ms, 4ms, 4ms, 8ms},
    };
    for (const auto& c : cases) {
        StepSchedule schedule;
        schedule.start(0ns, c.interval);
        if (c.tick > 0ns) schedule.ticked(c.tick);
        schedule.setInterval(c.changedAt, c.newInterval);
        EXPECT_EQ(schedule.next(), c.next) << c.what;
        schedule.ticked(schedule.next());
        EXPECT_EQ(schedule.next(), c.afterThat) << c.what;
    }
}

TEST(StepSchedule, ACurveOfIntervalsKeepsItsTimeThroughLateTicks) {
    StepSchedule schedule;
    StepSchedule::Time interval = 5ms, planned = interval, before{};
    schedule.start(0ns, interval);
    for (int n = 0; n < 600; ++n) {
        const auto began = schedule.next() + (n == 50 ? 4ms : 1us * (n % 70));
        ASSERT_GE(began - before, interval * 9 / 10) << n;
        before = began;
        schedule.ticked(began);
        interval = n < 400 ? interval * 995 / 1000 : interval * 1009 / 1000;
        schedule.setInterval(began + 20us, interval);
        schedule.finished(began + 30us);
        planned += interval;
    }
    EXPECT_EQ(schedule.next(), planned);
}
