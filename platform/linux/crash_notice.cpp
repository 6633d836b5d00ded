#include "platform/linux/crash_notice.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>

namespace linux_ports {

namespace {

constexpr std::array kCrashSignals = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};

// Variables that a signal handler may use.
std::atomic<int> noticeSocket{-1};
std::atomic<const void*> notice{nullptr};
std::atomic<std::size_t> noticeSize{0};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<const void*>::is_always_lock_free &&
              std::atomic<std::size_t>::is_always_lock_free);

// The user-interface thread may crash by a stack overflow.
constexpr std::size_t kStackBytes = std::size_t{32} * 1024;
alignas(16) std::array<char, kStackBytes> crashStack;

extern "C" void onCrash(int signal) {
    const int kept = errno;
    ::send(noticeSocket.load(), notice.load(), noticeSize.load(), MSG_DONTWAIT | MSG_NOSIGNAL);
    errno = kept;
    // The handler has been removed: the signal ends the process as soon as this handler returns.
    ::raise(signal);
}

} // namespace

CrashNotice::CrashNotice(const void* packet, std::size_t size) {
    notice = packet;
    noticeSize = size;
    stack_t stack{};
    stack.ss_sp = crashStack.data();
    stack.ss_size = crashStack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_handler = onCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_ONSTACK);
    for (const int signal : kCrashSignals)
        ::sigaction(signal, &action, nullptr);
}

CrashNotice::~CrashNotice() {
    for (const int signal : kCrashSignals)
        ::signal(signal, SIG_DFL);
    stack_t none{};
    none.ss_flags = SS_DISABLE;
    ::sigaltstack(&none, nullptr);
    noticeSocket = -1;
}

void CrashNotice::setSocket(int socket) {
    noticeSocket = socket;
}

} // namespace linux_ports
