#include "round.h"

#include <ctime>
#include <fstream>
#include <stdexcept>
#include <sys/resource.h>

namespace bench {

namespace {

constexpr const char* kEnd = "end";

double cpuSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

void write(const Round& round, const std::filesystem::path& path) {
    std::ofstream file(path);
    file << round.cpuShare << '\n' << round.remark << '\n' << round.series.size() << '\n';
    for (const Series& series : round.series) {
        file << series.name << '\n' << series.counted.value_or(-1) << ' ' << series.ticks.size() << '\n';
        for (const Nanoseconds tick : series.ticks)
            file << tick << '\n';
    }
    file << kEnd << '\n';
    if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

Round readRound(const std::filesystem::path& path) {
    std::ifstream file(path);
    Round round;
    std::size_t count = 0;
    file >> round.cpuShare;
    file.ignore(); // the end of its line: the remark may be empty
    std::getline(file, round.remark);
    file >> count;
    for (; file && count > 0; --count) {
        Series series;
        std::int64_t counted = -1;
        std::size_t ticks = 0;
        file >> std::ws;
        std::getline(file, series.name);
        file >> counted >> ticks;
        if (counted >= 0) series.counted = counted;
        for (Nanoseconds tick = 0; ticks > 0 && file >> tick; --ticks)
            series.ticks.push_back(tick);
        round.series.push_back(std::move(series));
    }
    std::string end;
    if (!(file >> end) || end != kEnd) throw std::runtime_error("no complete round in " + path.string());
    return round;
}

Nanoseconds now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return Nanoseconds{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

CpuMeter::CpuMeter() : cpuSeconds_(cpuSeconds()), begin_(now()) {}

double CpuMeter::share() const {
    return (cpuSeconds() - cpuSeconds_) / (static_cast<double>(now() - begin_) / 1e9);
}

} // namespace bench
