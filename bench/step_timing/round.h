#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bench {

using Nanoseconds = std::int64_t;

/// What every timer is set to.
constexpr Nanoseconds kInterval = 1'000'000;

/// The ticks of one timer, since any fixed moment.
struct Series {
    std::string name;
    std::vector<Nanoseconds> ticks;
    /// How many ticks the measured program itself believes to have made, where it can tell.
    std::optional<std::int64_t> counted{};
};

/// What one subject did while it was looked at.
struct Round {
    double cpuShare = 0; // of one core
    std::string remark;  // what a reader of the table must know
    std::vector<Series> series;
};

/// As a text file, because a subject and the one who looks at it are two processes.
void write(const Round& round, const std::filesystem::path& path);
/// Throws std::runtime_error when the file is no complete round.
Round readRound(const std::filesystem::path& path);

Nanoseconds now();

/// Processor time and time of this process since the object was made.
class CpuMeter {
  public:
    CpuMeter();
    double share() const;

  private:
    double cpuSeconds_;
    Nanoseconds begin_;
};

} // namespace bench
