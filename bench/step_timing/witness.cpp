#include "witness.h"

#include <algorithm>
#include <ctime>
#include <sched.h>

namespace bench {

namespace {

/// Short beside the stalls that count, and long beside what the loops themselves cost.
constexpr Nanoseconds kBetweenLooks = 2'000'000;

} // namespace

Witness::Witness() {
    cpu_set_t allowed;
    ::sched_getaffinity(0, sizeof allowed, &allowed);
    for (std::size_t processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (!CPU_ISSET(processor, &allowed)) continue;
        threads_.emplace_back([this, processor](const std::stop_token& stop) { watch(stop, processor); });
    }
}

void Witness::watch(const std::stop_token& stop, std::size_t processor) {
    cpu_set_t own;
    CPU_ZERO(&own);
    CPU_SET(processor, &own);
    ::sched_setaffinity(0, sizeof own, &own);
    while (!stop.stop_requested()) {
        const Nanoseconds due = now() + kBetweenLooks;
        const timespec until{due / 1'000'000'000, due % 1'000'000'000};
        ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
        const Nanoseconds late = now() - due;
        Nanoseconds longest = longest_;
        while (late > longest && !longest_.compare_exchange_weak(longest, late)) {
        }
    }
}

} // namespace bench
