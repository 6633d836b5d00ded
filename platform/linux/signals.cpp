#include "platform/linux/signals.h"

#include "runtime/errors.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>

namespace linux_ports {

namespace {

constexpr std::array kEndSignals = {SIGTERM, SIGINT, SIGHUP};

// A signal handler may use only a lock-free number and write().
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onEndSignal(int /*signal*/) {
    const int kept = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp.load(), &one, sizeof one);
    errno = kept;
}

// An empty handler instead of SIG_IGN, because started programs would inherit SIG_IGN. A lost terminal must
// not end the program while the coils are on.
extern "C" void onBrokenPipe(int /*signal*/) {}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals() : fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!fd_) throw runtime::ObjectError("Cannot watch for signals: " + reason(errno));
    wakeUp = fd_.get();
    for (const int signal : kEndSignals)
        handle(signal, onEndSignal);
    handle(SIGPIPE, onBrokenPipe);
}

EndSignals::~EndSignals() {
    for (const int signal : kEndSignals)
        handle(signal, SIG_DFL);
    handle(SIGPIPE, SIG_DFL);
    wakeUp = -1;
}

std::unique_ptr<FdWatch> EndSignals::deliver(FdWatcher& watcher, std::function<void()> end) {
    return watcher.watch(fd_.get(), [fd = fd_.get(), end = std::move(end)] {
        std::uint64_t count = 0;
        if (::read(fd, &count, sizeof count) == sizeof count) end();
    });
}

} // namespace linux_ports
