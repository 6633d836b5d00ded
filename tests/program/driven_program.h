#pragma once

#include "tests/emulated_port/emulated_port.h"

#include <QElapsedTimer>
#include <QProcess>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// Whether `done` became true in time; generous, for a busy machine.
inline bool comesTrue(const std::function<bool()>& done, int milliseconds = 15000) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > milliseconds) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// The children of a process, the oldest first, dead ones that nobody has reaped included.
inline std::vector<pid_t> childrenOf(pid_t parent) {
    std::vector<std::pair<std::int64_t, pid_t>> children; // with the time of their start
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream file(entry.path() / "stat");
        // "pid (name) state parent", 17 more, "start"; the name may hold anything.
        std::string line{std::istreambuf_iterator<char>(file), {}};
        line.erase(0, line.rfind(')') + 1);
        std::istringstream fields(line);
        pid_t its = 0;
        std::int64_t start = 0;
        std::string skipped;
        fields >> skipped >> its;
        for (int field = 0; field < 17; ++field)
            fields >> skipped;
        if (fields >> start && its == parent) children.emplace_back(start, std::stoi(name));
    }
    std::sort(children.begin(), children.end());
    std::vector<pid_t> pids;
    for (const auto& child : children)
        pids.push_back(child.second);
    return pids;
}

/// The open files and pipes of a process.
inline std::vector<std::string> filesOf(pid_t pid) {
    std::vector<std::string> files;
    std::error_code error; // it may end meanwhile
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd", error)) {
        const std::string target = std::filesystem::read_symlink(entry.path(), error);
        if (!target.starts_with("socket:") && !target.starts_with("anon_inode:") && target != "/dev/null")
            files.push_back(target);
    }
    return files;
}

/// This process becomes the parent of orphans, so that it learns how a watchdog ended whose controller is
/// gone.
inline void adoptOrphans() {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}
/// The exit code of an orphan; -1 when it does not end in time, or crashes.
inline int orphanEnds(pid_t pid) {
    int status = 0;
    if (!comesTrue([&] { return ::waitpid(pid, &status, WNOHANG) == pid; })) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The real program with its window, an emulated printer port and a hand on its buttons, in a process group
/// of its own.
class DrivenProgram {
  public:
    DrivenProgram(const EmulatedPort& port, const QStringList& arguments, const QString& display = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // The devices of a test bed, where there is one, are the program's and its watchdog's too.
        const QString testBed =
            environment.contains("UMOCKDEV_DIR") ? ":" + environment.value("LD_PRELOAD") : "";
        environment.insert("LD_PRELOAD", TWINSTEP_EMULATED_PORT + testBed);
        environment.insert("EMULATED_PORT", QString::fromStdString(port.path()));
        environment.insert("QT_PLUGIN_PATH", TWINSTEP_PLUGINS);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "hand");
        environment.insert("QT_QPA_PLATFORM", display.isEmpty() ? "offscreen" : "xcb");
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("DISPLAY", display);
        process_.setProcessEnvironment(environment);
        process_.setChildProcessModifier([] { ::setpgid(0, 0); });
        process_.start(TWINSTEP_PROGRAM, arguments);
        process_.waitForStarted();
        pid_ = static_cast<pid_t>(process_.processId());
    }
    DrivenProgram(const DrivenProgram&) = delete;
    DrivenProgram& operator=(const DrivenProgram&) = delete;
    ~DrivenProgram() { process_.kill(), process_.waitForFinished(); }

    pid_t pid() const { return pid_; }
    /// Its watchdog and the one that stands by, which is younger; 0 both unless it has these two children.
    std::pair<pid_t, pid_t> watchdogs() const {
        const auto children = childrenOf(pid_);
        if (children.size() != 2) return {};
        return {children.front(), children.back()};
    }
    pid_t watchdog() const { return watchdogs().first; }
    void signal(int number) const { ::kill(pid_, number); }

    /// Gives an order to the hand.
    void order(const std::string& words) {
        process_.write((words + '\n').c_str());
        process_.waitForBytesWritten();
    }
    /// Gives it and returns the answer; empty when there is none in time.
    std::string ask(const std::string& words) {
        order(words);
        while (!process_.canReadLine() && process_.waitForReadyRead(15000)) {
        }
        return process_.readLine().trimmed().toStdString();
    }
    /// Both engines run when this returns true.
    bool runs(const EmulatedPort& port, bool forward) {
        const bool obeyed = ask(forward ? "click cmdAv" : "click cmdInd") == "done" &&
                            ask(forward ? "click cmdAvB" : "click cmdIndB") == "done";
        const auto before = port.state().writes;
        constexpr int kSomeSteps = 100; // output writes
        return obeyed && comesTrue([&] { return port.state().writes > before + kSomeSteps; });
    }

    /// The exit code; -1 when it does not end in time, or crashes.
    int ends() {
        const bool ended = process_.state() == QProcess::NotRunning || process_.waitForFinished(15000);
        return ended && process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
    }
    std::string errors() { return process_.readAllStandardError().toStdString(); }

  private:
    QProcess process_;
    pid_t pid_ = 0;
};
