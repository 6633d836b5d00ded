#include "watchdog/guard.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kUsageError = 2;
constexpr int kPriority = 20;             // real-time; below the kernel's own threads
constexpr int kNiceness = -10;            // where real-time is refused
constexpr const char* kSpareMe = "-1000"; // the kernel never kills the watchdog when memory runs out

bool startedByController() {
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(watchdog::kSocket, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

/// A signal that ends the controller or its session must not end the watchdog before the outputs are off.
void outlive() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGUSR1, SIGUSR2})
        ::signal(signal, SIG_IGN);
    [[maybe_unused]] const int stays = ::chdir("/"); // hold no file system
}

/// Raises the priority, so that the watchdog is quick on a busy machine. If the system refuses, the watchdog
/// runs without.
void hurry() {
    const sched_param priority{.sched_priority = kPriority};
    if (::sched_setscheduler(0, SCHED_FIFO, &priority) != 0) ::setpriority(PRIO_PROCESS, 0, kNiceness);
    ::mlockall(MCL_CURRENT | MCL_FUTURE);
    const int score = ::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (score < 0) return;
    [[maybe_unused]] const ssize_t written = ::write(score, kSpareMe, std::strlen(kSpareMe));
    ::close(score);
}

} // namespace

int main() {
    if (!startedByController()) {
        std::fputs("twinstep-watchdog: twinstep starts this program; it does nothing by itself\n", stderr);
        return kUsageError;
    }
    outlive();
    hurry();
    watchdog::Guard guard;
    guard.run();
}
