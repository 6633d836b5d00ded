#include "platform/simulated/clock.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace std::chrono_literals;

struct ScheduledTimers : ::testing::Test {
    simulated::Clock clock;
};

} // namespace

TEST_F(ScheduledTimers, NoTickComesAfterStopAndStartAnewCountsFromNow) {
    int ticks = 0;
    const auto timer = clock.create([&] { ++ticks; });
    timer->start(4ms);
    clock.advance(3ms);
    timer->stop();
    clock.advance(3ms);
    timer->start(4ms);
    clock.advance(3ms);
    timer->start(4ms);
    clock.advance(3999us);
    EXPECT_EQ(ticks, 0);
    clock.advance(1us);
    EXPECT_EQ(ticks, 1);
}

TEST_F(ScheduledTimers, ANewPeriodCountsFromTheLastTick) {
    int ticks = 0;
    std::unique_ptr<platform::PeriodicTimer> timer =
        clock.create([&] { timer->setPeriod(++ticks == 1 ? 3ms : 1h); });
    timer->start(1h);
    timer->setPeriod(5ms);
    clock.advance(8ms);
    EXPECT_EQ(ticks, 2);
    EXPECT_EQ(timer->untilTick(), 1h);
}

TEST_F(ScheduledTimers, ATickMayStopRestartOrDestroyItsTimer) {
    std::string order;
    std::unique_ptr<platform::PeriodicTimer> first, second, third;
    first = clock.create([&] {
        order += '1';
        first->stop();
    });
    second = clock.create([&] {
        order += '2';
        second->start(5ms);
    });
    third = clock.create([&, held = std::string("3")] {
        third.reset();
        order += held; // what the tick holds is still there
    });
    for (auto* timer : {&first, &second, &third})
        (*timer)->start(1ms);
    clock.advance(11ms);
    EXPECT_EQ(order, "12322");
}

TEST_F(ScheduledTimers, GoOnWhileATickWaits) {
    int ticks = 0;
    const auto timer = clock.create([&] {
        if (++ticks == 1) clock.advance(10ms); // as an open box does
    });
    timer->start(2ms);
    clock.advance(2ms);
    EXPECT_EQ(ticks, 6);
}
