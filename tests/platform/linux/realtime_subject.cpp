// A program that asks for real-time scheduling as Twinstep does, under limits and rights of its own, and
// prints what it got. realtime_test.cpp runs it: limits and rights belong to a whole process.
//
// Arguments: RTPRIO MEMLOCK_MB USER. Ends with 77 where this user may not set these limits.

#include "platform/linux/realtime.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/realtime_kit.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cerrno>
#include <cstdlib>
#include <grp.h>
#include <iostream>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

void limit(__rlimit_resource resource, rlim_t value) {
    const rlimit both{value, value};
    constexpr int kMayNotSetLimits = 77;
    if (::setrlimit(resource, &both) != 0) std::exit(kMayNotSetLimits);
}

std::string scheduling() {
    const int policy = ::sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
    sched_param parameter{};
    ::sched_getparam(0, &parameter);
    return (policy == SCHED_RR      ? "round robin "
            : policy == SCHED_OTHER ? "usual "
                                    : "other ") +
           std::to_string(parameter.sched_priority);
}

std::string ofStartedProgram() {
    const pid_t child = ::fork();
    if (child == 0) std::_Exit(::sched_getscheduler(0));
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0 ? "usual" : "inherited";
}

/// Longer than any handler should.
void work(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(milliseconds)) {
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 4) throw std::invalid_argument("arguments: RTPRIO MEMLOCK_MB USER");
    limit(RLIMIT_RTPRIO, static_cast<rlim_t>(std::atoi(argv[1])));
    limit(RLIMIT_MEMLOCK, static_cast<rlim_t>(std::atoi(argv[2])) << 20U);
    const auto user = static_cast<uid_t>(std::atoi(argv[3]));
    if (user != ::geteuid() && (::setgroups(0, nullptr) != 0 || ::setresuid(user, user, user) != 0)) {
        throw std::system_error(errno, std::generic_category(), "user");
    }

    const QCoreApplication application(argc, argv);
    qt_ports::FdWatcher watcher;
    qt_ports::RealtimeKit kit;
    bool changed = false;
    linux_ports::Realtime realtime(watcher, kit, [&changed](const auto& state) {
        changed = true;
        std::cout << "changed: " << state.text() << '\n';
    });
    std::cout << realtime.state().text() << '\n' << "scheduling: " << scheduling() << '\n';
    std::cout << "started program: " << ofStartedProgram() << '\n';
    std::jthread([] { std::cout << "thread: " << scheduling() << '\n'; }).join();
    rlimit stretch{};
    ::getrlimit(RLIMIT_RTTIME, &stretch);
    std::cout << "killed after: "
              << (stretch.rlim_max == RLIM_INFINITY ? "never" : std::to_string(stretch.rlim_max)) << '\n';
    // More than the memory limit of any test, if not used.
    void* much = std::malloc(std::size_t{2} << 30U);
    std::cout << "memory: " << (much ? "there" : "refused") << '\n';
    std::free(much);
    if (realtime.state().granted) {
        work(600);
        std::cout << "after a long handler: " << scheduling() << '\n';
        // A broker answers while the loop goes on.
        QElapsedTimer clock;
        clock.start();
        while (!changed && scheduling() == "usual 0" && !clock.hasExpired(10'000)) {
            QCoreApplication::processEvents();
            ::usleep(1000);
        }
        std::cout << "back in the event loop: " << scheduling() << '\n';
    }
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
}
