#pragma once

#include "config/record_file.h"
#include "config/records.h"
#include "form/engine_panel.h"
#include "form/shell_panel.h"
#include "platform/linux/storage.h"
#include "tests/program/driven_program.h"

#include <atomic>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>

namespace record = config::record;

inline constexpr double kLongestOff = 100; // milliseconds from the controller's end until every coil is off

inline std::int64_t now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// The longest time that this machine kept somebody waiting who wanted nothing but to wake up. Measured
/// beside what is timed, because a busy or virtual machine stalls them both.
class Stalls {
  public:
    Stalls() = default;
    Stalls(const Stalls&) = delete;
    Stalls& operator=(const Stalls&) = delete;
    ~Stalls() { ends_ = true, thread_.join(); }

    void reset() { longest_ = 0; }
    /// Milliseconds.
    double longest() const { return static_cast<double>(longest_) / 1e6; }

  private:
    void look() {
        while (!ends_) {
            const auto before = now();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const std::int64_t late = now() - before - 1'000'000;
            if (late > longest_) longest_ = late;
        }
    }

    std::atomic<bool> ends_ = false;
    std::atomic<std::int64_t> longest_ = 0;
    std::thread thread_{[this] { look(); }};
};

/// Kills a process and waits until the system has ended it: milliseconds.
inline double endOf(pid_t pid) {
    const auto process = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    EXPECT_GE(process, 0);
    const auto moment = now();
    ::kill(pid, SIGKILL);
    pollfd ended{.fd = process, .events = POLLIN, .revents = 0};
    ::poll(&ended, 1, -1);
    ::close(process);
    return static_cast<double>(now() - moment) / 1e6;
}

/// The program at full speed in front of an emulated printer port, or of other outputs that a test names.
struct Guarded : ::testing::Test {
    /// `outputs` as in --port, none for the printer port; `off` are the lines at which no coil is energised.
    explicit Guarded(const char* outputs = nullptr, int off = EmulatedPort::kAllOff)
        : outputs_(outputs), off_(off) {
        adoptOrphans();
        setUp(1000, 1);
    }
    ~Guarded() override { std::filesystem::remove_all(folder); }

    /// Both engines at this speed in steps/s; multiplier 1: full step, 2: half step.
    void setUp(int speed, int multiplier) const {
        linux_ports::Storage disk;
        config::RecordFile(disk, folder / "save.cfg")
            .write(
                {config::integerRecord(record::kFunction, form::kCoilTuner),
                 config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 1),
                 config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 1),
                 config::integerRecord(record::kSlowA, speed), config::integerRecord(record::kFastA, speed),
                 config::integerRecord(record::kSlowB, speed), config::integerRecord(record::kFastB, speed),
                 config::byteRecord(record::kMultiplierA, multiplier),
                 config::byteRecord(record::kMultiplierB, multiplier)});
    }
    QStringList arguments() const {
        QStringList list{"--directory", QString::fromStdString(folder)};
        if (outputs_) list += {"--port", outputs_, "--coils-on", off_ == 0 ? "high" : "low"};
        return list;
    }

    /// Waits for the outputs to go off after `moment`, and says how long that took, in milliseconds.
    double offAfter(std::int64_t moment) const {
        EXPECT_TRUE(comesTrue([&] { return port.isOff(); }));
        return static_cast<double>(port.state().changed - moment) / 1e6;
    }

    /// Ends a program in mid-move, sees that nothing of it is left, and says after how many milliseconds the
    /// outputs were off, beyond what the machine itself stalled.
    double offBy(DrivenProgram& program, const std::function<void()>& end) {
        EXPECT_TRUE(program.runs(port, true)) << program.errors();
        const auto [watchdog, standBy] = program.watchdogs();
        EXPECT_NE(watchdog, 0);
        const Stalls stalls;
        const auto moment = now();
        end();
        const double took = offAfter(moment) - stalls.longest();
        program.ends();
        // Where it ended in good order, the program itself has reaped it.
        for (const pid_t guard : {watchdog, standBy})
            EXPECT_TRUE(comesTrue([&] { return ::waitpid(guard, nullptr, WNOHANG) != 0; }));
        EXPECT_TRUE(port.isOff());
        EXPECT_TRUE(port.claim()) << "somebody still holds the port";
        port.release();
        return took;
    }
    /// Whether the outputs went off in time in one of three rounds: a busy machine may take longer to end a
    /// process.
    static bool inTime(const std::function<double()>& round) {
        for (int rounds = 0; rounds < 3; ++rounds) {
            if (round() <= kLongestOff) return true;
        }
        return false;
    }

    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "twinstep-XXXXXX").string();
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    const char* const outputs_;
    const int off_;
    EmulatedPort port{folder / "port", off_};
};
