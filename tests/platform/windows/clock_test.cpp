#include "platform/windows/timers.h"
#include "tests/platform/windows/pump.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iomanip>
#include <iostream>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

struct Figures {
    double rate;     // of the wanted rate
    double shortest; // of the period
    double longest;
};

Figures figuresOf(const std::vector<Clock::time_point>& ticks, Clock::duration period) {
    Clock::duration shortest = Clock::duration::max();
    Clock::duration longest{};
    for (std::size_t at = 1; at < ticks.size(); ++at) {
        shortest = std::min(shortest, ticks[at] - ticks[at - 1]);
        longest = std::max(longest, ticks[at] - ticks[at - 1]);
    }
    const auto part = [&](Clock::duration time) {
        return static_cast<double>(time.count()) / static_cast<double>(period.count());
    };
    return {static_cast<double>(ticks.size() - 1) / part(ticks.back() - ticks.front()), part(shortest),
            part(longest)};
}

void print(const std::string& what, const Figures& figures) {
    std::cout << std::fixed << std::setprecision(3) << what << ": rate " << figures.rate << ", shortest "
              << figures.shortest << ", longest " << figures.longest << " of the period\n";
}

Figures stepClock(Clock::duration period, std::size_t count) {
    windows_ports::Timers timers;
    std::vector<Clock::time_point> ticks;
    const auto timer = timers.create([&] { ticks.push_back(Clock::now()); });
    timer->start(period);
    EXPECT_TRUE(pumpUntil([&] { return ticks.size() >= count; }, 120s));
    return figuresOf(ticks, period);
}

/// A loop that does nothing else: a message to itself for each tick, on the same schedule.
Figures bareLoop(Clock::duration period, std::size_t count) {
    std::vector<Clock::time_point> ticks;
    auto due = Clock::now() + period;
    while (ticks.size() < count) {
        while (Clock::now() < due)
            SwitchToThread();
        PostMessageW(nullptr, WM_APP, 0, 0);
        MSG message;
        GetMessageW(&message, nullptr, WM_APP, WM_APP);
        ticks.push_back(Clock::now());
        due = std::max(due + period, ticks.back() + period * 9 / 10);
    }
    return figuresOf(ticks, period);
}

TEST(WindowsStepClock, KeepsItsRateAndNeverHurries) {
    const Figures slow = stepClock(5ms, 400);
    print("200 steps/s", slow);
    EXPECT_GE(slow.shortest, 0.85);
    EXPECT_LE(slow.rate, 1.02);

    const Figures bare = bareLoop(1ms, 1000);
    const Figures fast = stepClock(1ms, 1000);
    print("1000 steps/s", fast);
    print("1000 turns/s of a bare loop", bare);
    EXPECT_GE(fast.shortest, 0.8);
    EXPECT_GE(fast.rate, bare.rate * 0.7);
}

} // namespace
