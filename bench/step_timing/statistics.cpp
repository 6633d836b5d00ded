#include "statistics.h"

#include <algorithm>

namespace bench {

namespace {

double intervals(Nanoseconds time) {
    return static_cast<double>(time) / kInterval;
}

} // namespace

void Figures::add(const Round& round) {
    for (const Series& series : round.series) {
        const auto& ticks = series.ticks;
        if (ticks.size() < 2) continue;
        for (std::size_t n = 1; n < ticks.size(); ++n)
            spacings_.push_back(ticks[n] - ticks[n - 1]);
        const Nanoseconds time = ticks.back() - ticks.front();
        time_ += time;
        missing_ += (time + kInterval / 2) / kInterval - (std::ssize(ticks) - 1);
        addLateness(ticks);
    }
    cpuShares_ += round.cpuShare;
    ++rounds_;
}

void Figures::addLateness(const std::vector<Nanoseconds>& ticks) {
    std::vector<Nanoseconds>
        beat; // behind the first tick of a beat, and below 0 where that one was late itself
    const auto endBeat = [&] {
        const Nanoseconds earliest = *std::min_element(beat.begin(), beat.end());
        for (const Nanoseconds late : beat)
            latenesses_.push_back(late - earliest);
        beat.clear();
    };
    Nanoseconds due = ticks.front(), before = due;
    for (const Nanoseconds tick : ticks) {
        if (habit_.skips) {
            due += std::max<Nanoseconds>(0, (tick - due) / kInterval) * kInterval;
        } else if (intervals(tick - before) > habit_.longestStall ||
                   intervals(tick - due) > habit_.longestBacklog) {
            latenesses_.push_back(tick - due);
            endBeat();
            due = tick;
        }
        beat.push_back(tick - due);
        before = tick;
        due += kInterval;
    }
    endBeat();
}

double Figures::rateError() const {
    return static_cast<double>(spacings_.size()) * kInterval / static_cast<double>(time_) - 1;
}

Spread Figures::spread(std::vector<Nanoseconds> values) {
    std::sort(values.begin(), values.end());
    const auto at = [&](double share) {
        return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
    };
    return {at(0), at(0.5), at(0.99), at(0.999), at(1)};
}

double rateError(const Series& series) {
    const auto& ticks = series.ticks;
    if (ticks.size() < 2) return -1;
    return static_cast<double>(ticks.size() - 1) * kInterval /
               static_cast<double>(ticks.back() - ticks.front()) -
           1;
}

} // namespace bench
