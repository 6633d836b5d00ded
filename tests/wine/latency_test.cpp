#include "tests/wine/station_window.h"

#include <QElapsedTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr double kLimit = 50; // milliseconds from the change to the label
constexpr int kChanges = 250; // of each program
// Somebody else's build on the same machine holds up a change now and then. One that is late is measured
// again where a loop that does nothing was held up too: each change passes through some ten programs and
// threads, so by a tenth of the limit or more.
constexpr double kHeldUp = kLimit / 10; // milliseconds
constexpr int kMostExcused = kChanges / 20;

/// A loop of nothing but naps, beside what is measured: how long the machine itself holds a program up.
class BareLoop {
  public:
    BareLoop() = default;
    BareLoop(const BareLoop&) = delete;
    BareLoop& operator=(const BareLoop&) = delete;
    ~BareLoop() {
        ends_ = true;
        thread_.join();
    }
    /// The longest hold-up in milliseconds since the last call.
    double takeWorst() { return static_cast<double>(worst_.exchange(0)) / 1e3; }

  private:
    void nap() {
        using Clock = std::chrono::steady_clock;
        constexpr auto kNap = std::chrono::milliseconds(1);
        while (!ends_) {
            const auto due = Clock::now() + kNap;
            std::this_thread::sleep_until(due);
            const long late =
                std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - due).count();
            worst_ = std::max(worst_.load(), late);
        }
    }

    std::atomic<bool> ends_ = false;
    std::atomic<long> worst_ = 0; // microseconds
    std::thread thread_{[this] { nap(); }};
};

class Latency : public StationWindow {
  protected:
    /// The value that the n-th change has: neighbours differ.
    using Change = std::function<void(int n)>;
    using Text = std::function<std::string(int n)>;

    void measure(const char* program, const char* labelName, const Change& change, const Text& shown) {
        std::vector<double> times;
        int late = 0, excused = 0;
        double heldUp = 0;
        for (int good = 0; good < kChanges && late == 0;) {
            loop_.takeWorst();
            const auto time = oneChange(labelName, change, shown);
            ASSERT_TRUE(time) << program << ": " << shown(n_) << " never came";
            times.push_back(*time);
            const double stalled = loop_.takeWorst();
            heldUp = std::max(heldUp, stalled);
            if (*time <= kLimit) {
                ++good;
            } else if (stalled >= kHeldUp && excused < kMostExcused) {
                ++excused;
            } else {
                ++late;
            }
        }
        report(program, times);
        std::printf(
            "%-18s %d above %.0f ms while the machine stalled, %d on its own; a bare loop was held up "
            "%.1f ms\n",
            "", excused, kLimit, late, heldUp);
        EXPECT_EQ(late, 0) << program << ": " << times.back() << " ms";
        all_.insert(all_.end(), times.begin(), times.end());
    }

    static void report(const char* what, std::vector<double> times) {
        std::ranges::sort(times);
        const auto share = [&times](std::size_t percent) { return times[times.size() * percent / 100]; };
        std::printf("%-18s %zu changes: median %.1f ms, 90 %% %.1f ms, 99 %% %.1f ms, worst %.1f ms\n", what,
                    times.size(), share(50), share(90), share(99), times.back());
    }

    std::vector<double> all_;

  private:
    /// Its milliseconds; nothing when it never came.
    std::optional<double> oneChange(const char* labelName, const Change& change, const Text& shown) {
        // Anywhere between two rounds of drawing.
        std::uniform_int_distribution<int> pause(0, 40);
        waitFor([] { return false; }, pause(random_));
        const std::string expected = shown(++n_);
        QElapsedTimer clock;
        clock.start();
        change(n_);
        if (!waitFor([&] { return text(labelName) == expected; })) return std::nullopt;
        return static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }

    BareLoop loop_;
    int n_ = 0;
    std::mt19937 random_{1};
};

std::string padded(int number, int digits) {
    std::string text(static_cast<std::size_t>(digits), '0');
    text += std::to_string(number);
    return text.substr(text.size() - static_cast<std::size_t>(digits));
}

TEST_F(Latency, OfAThousandChangesIsWithinFiftyMilliseconds) {
    startBridge();
    DdeServer radio(DdeServer::HamRadioDeluxe, "1.800.000");
    LoggerWindow logger;
    DdeServer orbitron(DdeServer::Orbitron, "UPDATE AZ0.0 EL0.0");
    DdeServer satPc32(DdeServer::SatPc32, "SNAO-7 AZ0.0 EL0.0 UP0 UMFM DN0 DMFM MA1");

    start(form::kCoilTuner, form::kHamRadioDeluxe);
    click("cmdAutoMemConn");
    ASSERT_TRUE(shows("lblFreqRx", "1.800.000"));
    const auto hertz = [](int n) { return 14'000'000 + n; };
    const auto megahertz = [](int n) { return "14." + padded(n / 1000, 3) + "." + padded(n % 1000, 3); };
    measure(
        "Ham Radio Deluxe", "lblFreqRx", [&](int n) { radio.set(megahertz(n)); }, megahertz);
    click("cmdAutoMemConn");

    f().intConnProgrTuner = form::kLogger32;
    click("cmdAutoMemConn");
    logger.line("subscribed ");
    measure(
        "Logger32", "lblLog32DataM", [&](int n) { logger.tell("frequency " + std::to_string(hertz(n))); },
        megahertz);
    click("cmdAutoMemConn");

    f().mnuSat.Click.fire();
    const auto direction = [](int n) {
        return " AZ" + std::to_string(n % 360) + ".5 EL" + std::to_string(n % 90) + ".5";
    };
    f().intSatSource = 1;
    click("cmdConnect");
    orbitron.line("linked");
    measure(
        "Orbitron", "lblAzRx", [&](int n) { orbitron.set("UPDATE" + direction(n)); },
        [](int n) { return std::to_string(n % 360) + ".5"; });
    click("cmdConnect");
    click("chkOpenCom");
    satPc32.line("linked");
    measure(
        "SatPC32", "lblAzRx", [&](int n) { satPc32.set("SNAO-7" + direction(n) + " UP0 UMFM DN0 DMFM MA1"); },
        [](int n) { return padded(n % 360, 3) + ".50"; });
    report("all four", all_);
}

} // namespace
