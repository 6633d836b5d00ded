#include "platform/linux/realtime.h"

#include "runtime/errors.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <linux/capability.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace linux_ports {

namespace {

/// Above all programs of a desktop, below the kernel's interrupt threads (50).
constexpr int kPriority = 20;
/// Without a rest; far longer than a tick or a repaint takes.
constexpr auto kLongestHandler = std::chrono::microseconds(100'000);
/// Kept free below the memory limit for growing stacks: a locked stack that reaches the limit crashes the
/// program.
constexpr rlim_t kStackReserve = 64U << 20; // bytes

// Used by the signal handler, which may only use lock-free numbers and system calls.
std::atomic<pid_t> raisedThread{0};
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<pid_t>::is_always_lock_free);

int schedule(pid_t thread, int policy, int priority) {
    const sched_param parameter{.sched_priority = priority};
    // Once the flag is set, an ordinary user cannot clear it, so every call must set it.
    return ::sched_setscheduler(thread, policy | SCHED_RESET_ON_FORK, &parameter);
}

extern "C" void onTooLong(int /*signal*/) {
    const int kept = errno;
    schedule(raisedThread, SCHED_OTHER, 0);
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp, &one, sizeof one);
    errno = kept;
}

void handleTooLong(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGXCPU, &action, nullptr);
}

/// The kernel sends SIGXCPU at half of `most` and kills at `most`. Zero: it never kills.
void limitStretch(std::chrono::microseconds most) {
    rlimit limit{};
    ::getrlimit(RLIMIT_RTTIME, &limit);
    if (most.count() > 0) limit.rlim_max = std::min(limit.rlim_max, static_cast<rlim_t>(most.count()));
    limit.rlim_cur = std::min(static_cast<rlim_t>(kLongestHandler.count()), limit.rlim_max / 2);
    ::setrlimit(RLIMIT_RTTIME, &limit);
}

rlim_t softLimit(__rlimit_resource resource) {
    rlimit limit{};
    ::getrlimit(resource, &limit);
    return limit.rlim_cur;
}

/// The limit of locked memory. Root has no limit, whatever the number says.
rlim_t lockLimit() {
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> rights{};
    const bool known = ::syscall(SYS_capget, &header, rights.data()) == 0;
    const bool mayLockAll = known && (rights[0].effective & CAP_TO_MASK(CAP_IPC_LOCK)) != 0;
    return mayLockAll ? RLIM_INFINITY : softLimit(RLIMIT_MEMLOCK);
}

rlim_t addressSpace() {
    std::ifstream file("/proc/self/statm");
    rlim_t pages = 0;
    file >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

} // namespace

std::string Realtime::State::text() const {
    if (!granted) return "not real-time: " + whyNot;
    return "real-time " + std::to_string(priority) + (how.empty() ? "" : " (" + how + ")") +
           (memoryLocked ? "" : ", memory not locked: " + whyNot);
}

Realtime::Realtime(FdWatcher& watcher, RealtimeBroker& broker, std::function<void(const State&)> changed)
    : broker_(broker), changed_(std::move(changed)), fellBack_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      answered_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!fellBack_ || !answered_) {
        state_.whyNot = reason(errno);
        return;
    }
    fellBackWatch_ = watcher.watch(fellBack_.get(), [this] { raiseAgain(); });
    answeredWatch_ = watcher.watch(answered_.get(), [this] { brokerAnswered(); });
    raisedThread = ::gettid();
    wakeUp = fellBack_.get();
    handleTooLong(onTooLong);
    raise();
    if (state_.granted) lockMemory();
}

Realtime::~Realtime() {
    if (!fellBackWatch_) return;
    if (asking_.valid()) asking_.wait();
    schedule(0, SCHED_OTHER, 0);
    if (state_.memoryLocked) ::munlockall();
    handleTooLong(SIG_DFL);
    wakeUp = -1;
}

void Realtime::raise() {
    if (!takeIt()) askBroker();
}

/// Returns true if the user has the right or the limit `rtprio` allows it.
bool Realtime::takeIt() {
    const rlim_t allowed = softLimit(RLIMIT_RTPRIO);
    for (const int priority : {kPriority, static_cast<int>(std::min<rlim_t>(allowed, kPriority))}) {
        if (priority == 0) continue;
        limitStretch(std::chrono::microseconds::zero());
        if (schedule(0, SCHED_RR, priority) != 0) continue;
        state_.granted = true;
        state_.priority = priority;
        state_.how.clear();
        return true;
    }
    return false;
}

void Realtime::askBroker() {
    try {
        const RealtimeBroker::Limits limits = broker_.limits();
        limitStretch(limits.withoutRest);
        const int priority = std::min(kPriority, limits.priority);
        broker_.raise(::gettid(), priority);
        state_.granted = true;
        state_.priority = priority;
        state_.how = broker_.name();
    } catch (const runtime::ObjectError& error) {
        state_.granted = false;
        state_.whyNot = error.what();
    }
}

/// Locks the memory, so that no tick waits for the disk. Under a limit, MCL_FUTURE could make later
/// allocations fail. So under a limit only existing memory is locked, and only if enough is left for the
/// stacks.
void Realtime::lockMemory() {
    const rlim_t limit = lockLimit();
    const bool unlimited = limit == RLIM_INFINITY;
    if (!unlimited && addressSpace() + kStackReserve > limit) {
        state_.whyNot = "the limit memlock is " + std::to_string(limit >> 20U) + " MB";
    } else if (::mlockall(MCL_CURRENT) != 0) {
        state_.whyNot = reason(errno);
    } else {
        state_.memoryLocked = true;
        // Later memory is locked when it is first used: locking whole thread stacks would cost megabytes
        // each.
        if (unlimited) ::mlockall(MCL_FUTURE | MCL_ONFAULT);
    }
}

void Realtime::raiseAgain() {
    std::uint64_t count = 0;
    if (::read(fellBack_.get(), &count, sizeof count) != sizeof count) return;
    if (takeIt() || asking_.valid()) return;
    asking_ = std::async(std::launch::async, [this, thread = raisedThread.load()] {
        std::string refusal;
        try {
            broker_.raise(thread, state_.priority);
        } catch (const runtime::ObjectError& error) {
            refusal = error.what();
        }
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(answered_.get(), &one, sizeof one);
        return refusal;
    });
}

void Realtime::brokerAnswered() {
    std::uint64_t count = 0;
    if (::read(answered_.get(), &count, sizeof count) != sizeof count || !asking_.valid()) return;
    const std::string refusal = asking_.get();
    if (refusal.empty()) return;
    state_.granted = false;
    state_.whyNot = refusal;
    changed_(state_);
}

} // namespace linux_ports
