#include "subjects.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>
#include <unistd.h>

namespace bench {

namespace {

/// Processor time of the process that runs the thread, taken from outside while it lives.
class CpuOfProcess {
  public:
    explicit CpuOfProcess(std::string name) : name_(std::move(name)) {
        thread_ = std::jthread([this](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                look();
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        });
    }
    /// Between the first and the last look that found it.
    double share() {
        thread_.request_stop();
        thread_.join();
        return last_.at > first_.at ? (last_.cpuSeconds - first_.cpuSeconds) /
                                          (static_cast<double>(last_.at - first_.at) / 1e9)
                                    : 0;
    }

  private:
    struct Look {
        Nanoseconds at = 0;
        double cpuSeconds = 0;
    };

    void look() {
        if (!std::filesystem::exists(process_)) process_ = find();
        std::ifstream stat(process_ / "stat");
        std::string text;
        // Behind the name in parentheses: fields 3 to 13, then user and system time in clock ticks.
        if (!std::getline(stat, text) || text.rfind(')') == std::string::npos) return;
        std::istringstream fields(text.substr(text.rfind(')') + 1));
        std::string skipped;
        for (int field = 3; field <= 13; ++field)
            fields >> skipped;
        double user = 0, system = 0;
        fields >> user >> system;
        last_ = {now(), (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK))};
        if (first_.at == 0) first_ = last_;
    }
    std::filesystem::path find() const {
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            std::ifstream file(entry.path() / "comm");
            std::string name;
            if (file && std::getline(file, name) && name == name_) return entry.path();
        }
        return "/proc/none";
    }

    std::string name_;
    std::filesystem::path process_ = "/proc/none";
    Look first_, last_;
    std::jthread thread_;
};

/// How LinuxCNC says that it schedules its thread.
std::string scheduling(const std::filesystem::path& log) {
    const std::string mark = "Note: ";
    std::ifstream file(log);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(mark)) return "it says \"" + line.substr(mark.size()) + '"';
    }
    return {};
}

} // namespace

Round linuxCncThread(std::chrono::seconds duration, const std::filesystem::path& folder) {
    const auto count = std::chrono::nanoseconds(duration).count() / kInterval;
    const std::filesystem::path script = folder / "thread.hal", samples = folder / "samples";
    // timedelta says how long ago it ran last, and sampler hands that over for every period.
    std::ofstream(script) << "loadrt threads name1=base period1=" << kInterval << '\n'
                          << "loadrt timedelta\n"
                             "loadrt sampler cfg=s depth=30000\n"
                             "addf timedelta.0 base\n"
                             "addf sampler.0 base\n"
                             "net spacing timedelta.0.out => sampler.0.pin.0\n"
                             "start\n"
                             "loadusr -w halsampler -n "
                          << count + 1 << ' ' << samples.string() << "\nstop\n";
    const std::string asUser =
        ::geteuid() == 0 ? "setpriv --reuid=nobody --regid=nogroup --clear-groups " : "";
    const std::string command = "cd " + folder.string() + " && HOME=" + folder.string() + ' ' + asUser +
                                "halrun -f " + script.string() + " >log 2>&1";
    CpuOfProcess cpu("rtapi_app");
    if (std::system(command.c_str()) != 0) throw std::runtime_error("halrun failed, see " + folder.string());
    Round round{.cpuShare = cpu.share(), .remark = scheduling(folder / "log"), .series = {{"LinuxCNC", {}}}};

    std::ifstream file(samples);
    std::vector<Nanoseconds>& ticks = round.series.front().ticks;
    Nanoseconds time = 0;
    std::string spacing;
    file >> spacing; // of the first tick, which has none before it
    ticks.push_back(time);
    while (file >> spacing) {
        if (spacing == "overrun") throw std::runtime_error("halsampler lost samples");
        ticks.push_back(time += std::stoll(spacing));
    }
    if (std::ssize(ticks) != count + 1) throw std::runtime_error("halsampler gave too few samples");
    return round;
}

} // namespace bench
