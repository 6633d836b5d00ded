// Measures, from outside, how long a windowed program takes from its start to its first painted window, and
// the memory it keeps when idle. Takes two programs, ours first, and prints one beside the other.

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kStarts = 15;
constexpr auto kPatience = std::chrono::seconds(20);
constexpr auto kUntilIdle = std::chrono::seconds(2);
/// What the toolkit logs when a window's first picture leaves for the screen.
constexpr const char* kPainted = "Flushing QRegion(";

struct Cost {
    double milliseconds;
    double megabytes;
};

class Process {
  public:
    Process(const std::string& program, const std::vector<std::string>& arguments) {
        std::array<int, 2> pipe{};
        if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions{};
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO);
        std::vector<std::string> words = arguments;
        words.insert(words.begin(), program);
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        const int error = ::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(pipe[1]);
        log_ = pipe[0];
        if (error != 0) throw std::runtime_error("cannot start " + program);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
        ::close(log_);
    }

    void waitUntilPainted() const {
        std::string text;
        std::array<char, 4096> part{};
        const auto end = Clock::now() + kPatience;
        while (text.find(kPainted) == std::string::npos) {
            pollfd ready{.fd = log_, .events = POLLIN, .revents = 0};
            const ssize_t size = ::poll(&ready, 1, 1000) > 0 ? ::read(log_, part.data(), part.size()) : -1;
            if (size == 0 || Clock::now() > end) throw std::runtime_error("no window was painted: " + text);
            if (size > 0) text.append(part.data(), static_cast<std::size_t>(size));
        }
    }
    double residentMegabytes() const {
        std::ifstream file("/proc/" + std::to_string(pid_) + "/statm");
        double total = 0, resident = 0;
        file >> total >> resident;
        return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024 * 1024);
    }

  private:
    pid_t pid_ = 0;
    int log_ = -1;
};

Cost measure(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<double> times;
    for (int n = 0; n < kStarts; ++n) {
        const auto begin = Clock::now();
        const Process process(program, arguments);
        process.waitUntilPainted();
        times.push_back(Milliseconds(Clock::now() - begin).count());
    }
    std::nth_element(times.begin(), times.begin() + kStarts / 2, times.end());
    const Process process(program, arguments);
    process.waitUntilPainted();
    std::this_thread::sleep_for(kUntilIdle);
    return {times[kStarts / 2], process.residentMegabytes()};
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 3) throw std::runtime_error("arguments: the program, the reference");
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("QT_LOGGING_RULES", "qt.widgets.painting.info=true", 1);
    std::string folder = "/tmp/twinstep-bench-XXXXXX";
    if (!::mkdtemp(folder.data())) throw std::runtime_error("no folder in /tmp");

    const Cost ours = measure(argv[1], {"--directory", folder, "--port", "simulated"});
    const Cost reference = measure(argv[2], {});
    std::printf("%-44s %10.1f ms   empty window %8.1f ms   ratio %5.2f\n",
                "start to first painted window (median)", ours.milliseconds, reference.milliseconds,
                ours.milliseconds / reference.milliseconds);
    std::printf("%-44s %10.1f MB   empty window %8.1f MB   ratio %5.2f\n",
                "resident memory of the idle window", ours.megabytes, reference.megabytes,
                ours.megabytes / reference.megabytes);
    ::unlink((folder + "/save.cfg").c_str());
    ::rmdir(folder.c_str());
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "start-up benchmark: %s\n", error.what());
    return EXIT_FAILURE;
}
