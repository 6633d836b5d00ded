// Measures how evenly timers of one millisecond tick: Twinstep's step timers, in its real window, beside a
// bare timerfd loop, a timer of the toolkit and LinuxCNC's user-space thread, in turn, round after round.
// Prints the figures as Markdown, draws the spacings, and ends with 1 when Twinstep's steps break what they
// promise.

#include "picture.h"
#include "statistics.h"
#include "subjects.h"
#include "witness.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <spawn.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace bench;

// What Twinstep promises.
constexpr Nanoseconds kLeastSpacing = kInterval * 85 / 100;
constexpr double kLargestRateError = 0.001;
// What it aims at.
constexpr double kSpacingBesideBare = 1.1; // times the bare loop's, 99 % of each engine's spacings
constexpr double kCpuShare = 0.12;         // of a core, with both engines
/// A machine that stalled for longer did not allow an exact rate in that round.
constexpr Nanoseconds kStallAllowed = 5'000'000;
/// The engines reach the end of their run a second later.
constexpr int kLongestRound = 14; // seconds

/// Beyond its own time a subject may take so long.
constexpr unsigned kPatience = 20; // seconds

struct Subject {
    const char* name; // as the first argument of the process that measures it
    const char* title;
    Habit habit;
    bool ours;
};

constexpr Habit kSkips{.skips = true};
constexpr Habit kMakesUp{};
/// Ten intervals behind the nine tenths of one that part any two steps.
constexpr Habit kTwinstep{.longestStall = 10.9, .longestBacklog = 100};

const std::vector<Subject> kSubjects = {
    {"bare", "bare `timerfd` loop", kSkips, false},
    {"toolkit", "bare `QTimer`, 1 ms, precise, empty window", kSkips, false},
    {"linuxcnc", "LinuxCNC's user-space thread", kMakesUp, false},
    {"twinstep", "**Twinstep**, both engines, window drawn", kTwinstep, true},
    {"twinstep-realtime", "**Twinstep** with `--realtime`", kTwinstep, true},
};

struct Row {
    const Subject* subject;
    Figures figures;
    std::string remark;
    std::map<std::string, Figures> engines{}; // by name
};

class TemporaryFolder {
  public:
    TemporaryFolder() {
        if (!::mkdtemp(name_.data())) throw std::runtime_error("no folder in /tmp");
        ::chmod(name_.c_str(), 0777); // LinuxCNC's programs run as another user
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(name_); }
    std::filesystem::path path() const { return name_; }

  private:
    std::string name_ = "/tmp/twinstep-timing-XXXXXX";
};

/// In the process of the subject.
void measure(const std::string& subject, std::chrono::seconds duration, const std::filesystem::path& folder,
             int argc, char** argv) {
    ::alarm(static_cast<unsigned>(duration.count()) + kPatience); // a subject that hangs ends here
    Round round;
    if (subject == "bare") {
        round = bareLoop(duration);
    } else {
        const QApplication application(argc, argv);
        if (subject == "toolkit") {
            round = toolkitTimer(duration);
        } else {
            round = twinstepWindow(duration, subject == "twinstep" ? Scheduling::Usual : Scheduling::RealTime,
                                   folder);
        }
    }
    write(round, folder / "round");
}

Round runSubject(const char* subject, std::chrono::seconds duration) {
    const TemporaryFolder folder;
    if (std::strcmp(subject, "linuxcnc") == 0) return linuxCncThread(duration, folder.path());
    std::string program = "/proc/self/exe", name = subject, seconds = std::to_string(duration.count()),
                path = folder.path();
    std::array<char*, 5> arguments = {program.data(), name.data(), seconds.data(), path.data(), nullptr};
    pid_t child = 0;
    const int error = ::posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ);
    int status = 0;
    if (error != 0 || ::waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error(name + " failed");
    }
    return readRound(folder.path() / "round");
}

/// Says each promise that a round has broken; returns how many.
int checkPromises(const Row& row, const Round& round, Nanoseconds stall) {
    int broken = 0;
    const auto complain = [&](const std::string& engine, const std::string& what) {
        std::cout << "BROKEN: " << row.subject->name << ", engine " << engine << ": " << what << std::endl;
        ++broken;
    };
    for (const Series& series : round.series) {
        const auto& ticks = series.ticks;
        for (std::size_t n = 1; n < ticks.size(); ++n) {
            if (ticks[n] - ticks[n - 1] >= kLeastSpacing) continue;
            complain(series.name, std::to_string(ticks[n] - ticks[n - 1]) + " ns between two steps");
        }
        if (series.counted && *series.counted != std::ssize(ticks)) {
            complain(series.name, std::to_string(ticks.size()) + " steps in the trace, " +
                                      std::to_string(*series.counted) + " in the position");
        }
        if (stall < kStallAllowed && std::abs(rateError(series)) > kLargestRateError) {
            complain(series.name, "the rate is wrong by " + std::to_string(rateError(series) * 100) + " %");
        }
    }
    return broken;
}

std::string milliseconds(Nanoseconds time) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(time) / 1e6);
    return text.data();
}

std::string spreadCells(const Spread& spread) {
    std::string cells;
    for (const Nanoseconds value : {spread.least, spread.median, spread.p99, spread.p999, spread.most})
        cells += ' ' + milliseconds(value) + " |";
    return cells;
}

void printTables(const std::vector<Row>& rows) {
    std::cout << "\n| spacing, ms | least | median | 99 % | 99.9 % | most | rate | ticks missing | CPU of a "
                 "core |\n"
                 "|---|---|---|---|---|---|---|---|---|\n";
    for (const Row& row : rows) {
        std::cout << "| " << row.subject->title << " |";
        if (row.figures.empty()) {
            std::cout << " – | – | – | – | – | – | – | " << row.remark << " |\n";
            continue;
        }
        std::array<char, 64> rest{};
        std::snprintf(rest.data(), rest.size(), " %+.3f %% | %lld | %.1f %% |\n",
                      row.figures.rateError() * 100, static_cast<long long>(row.figures.missing()),
                      row.figures.cpuShare() * 100);
        std::cout << spreadCells(row.figures.spacing()) << rest.data();
    }
    std::cout << "\n| lateness, ms | least | median | 99 % | 99.9 % | most |\n|---|---|---|---|---|---|\n";
    for (const Row& row : rows) {
        if (row.figures.empty()) continue;
        std::cout << "| " << row.subject->title << " |" << spreadCells(row.figures.lateness()) << '\n';
    }
    std::cout << '\n';
    for (const Row& row : rows) {
        if (!row.remark.empty() && !row.figures.empty())
            std::cout << "- " << row.subject->title << ": " << row.remark << ".\n";
    }
}

void printAims(const std::vector<Row>& rows) {
    const auto& bare = rows.front().figures;
    for (const Row& row : rows) {
        if (!row.subject->ours || row.figures.empty()) continue;
        std::printf("- %s: 99 %% of spacings within", row.subject->title);
        bool missed = false;
        for (const auto& [name, figures] : row.engines) {
            const double ratio =
                static_cast<double>(figures.spacing().p99) / static_cast<double>(bare.spacing().p99);
            std::printf(" %.2f (engine %s)", ratio, name.c_str());
            missed |= ratio > kSpacingBesideBare;
        }
        const double cpu = row.figures.cpuShare();
        std::printf(" times the bare loop's (aim: %.1f)%s; %.1f %% of a core (aim: %.0f %%)%s.\n",
                    kSpacingBesideBare, missed ? ", MISSED" : "", cpu * 100, kCpuShare * 100,
                    cpu <= kCpuShare ? "" : ", MISSED");
    }
}

int compare(int rounds, std::chrono::seconds duration, const std::filesystem::path& picture) {
    std::vector<Row> rows;
    for (const Subject& subject : kSubjects)
        rows.push_back({&subject, Figures(subject.habit), {}});
    Witness witness;
    int broken = 0, judged = 0, ours = 0;
    for (int n = 1; n <= rounds; ++n) {
        for (Row& row : rows) {
            std::cerr << "round " << n << " of " << rounds << ": " << row.subject->name << std::endl;
            witness.longestStall();
            const Round round = runSubject(row.subject->name, duration);
            const Nanoseconds stall = witness.longestStall();
            row.remark = round.remark;
            if (round.series.empty()) continue;
            row.figures.add(round);
            for (const Series& series : round.series) {
                row.engines.try_emplace(series.name, row.subject->habit)
                    .first->second.add({.cpuShare = 0, .remark = {}, .series = {series}});
            }
            if (!row.subject->ours) continue;
            ++ours;
            judged += stall < kStallAllowed;
            broken += checkPromises(row, round, stall);
        }
    }
    printTables(rows);
    printAims(rows);
    std::printf(
        "- The mean rate was judged in %d of %d rounds; in the others the machine itself stalled for %lld "
        "ms or more.\n",
        judged, ours, static_cast<long long>(kStallAllowed / 1'000'000));
    std::vector<Histogram> histograms;
    for (const Row& row : rows) {
        if (!row.figures.empty()) histograms.push_back({row.subject->title, &row.figures});
    }
    draw(histograms, picture);
    return broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) try {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    if (argc != 4) throw std::runtime_error("arguments: rounds, seconds of each, picture");
    const bool isSubject = std::strchr("0123456789", *argv[1]) == nullptr;
    if (isSubject) {
        measure(argv[1], std::chrono::seconds(std::stoi(argv[2])), argv[3], argc, argv);
        return EXIT_SUCCESS;
    }
    const int rounds = std::stoi(argv[1]), seconds = std::stoi(argv[2]);
    if (rounds < 1 || seconds < 1 || seconds > kLongestRound) {
        throw std::runtime_error("a round takes 1 to " + std::to_string(kLongestRound) + " seconds");
    }
    return compare(rounds, std::chrono::seconds(seconds), argv[3]);
} catch (const std::exception& error) {
    std::cerr << "step timing: " << error.what() << '\n';
    return EXIT_FAILURE;
}
