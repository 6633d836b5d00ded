#include "platform/linux/watchdog_process.h"

#include "runtime/errors.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
// The header of glibc 2.36 does not say that these are C functions.
extern "C" {
#include <sys/pidfd.h>
}

namespace linux_ports {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kLongestStart{5000}; // from a slow disk
constexpr milliseconds kLongestAnswer{1000};
constexpr milliseconds kLongestEnd{300};
/// Room for some twenty beats, so that a watchdog that does not read is noticed after a few seconds.
constexpr int kSendBufferBytes = 8192;
/// Above every descriptor of the started process, so that putting one in its place cannot destroy another.
constexpr int kOutOfTheWay = 16;

/// Waits until `fd` is readable. False when it is not in time.
bool readable(int fd, milliseconds longest) {
    const auto latest = Clock::now() + longest;
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(latest - Clock::now());
        pollfd source{.fd = fd, .events = POLLIN, .revents = 0};
        const int ready = ::poll(&source, 1, std::max(0, static_cast<int>(left.count())));
        if (ready > 0) return true;
        if (ready == 0 || errno != EINTR) return false;
    }
}

FileDescriptor outOfTheWay(int fd) {
    return FileDescriptor(::fcntl(fd, F_DUPFD_CLOEXEC, kOutOfTheWay));
}

/// The three descriptors that a watchdog inherits.
struct Inherited {
    FileDescriptor socket, controller, tripped;
};

/// Returns an errno.
int spawn(const std::filesystem::path& program, const Inherited& inherited, pid_t& pid) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    // A pipe of whoever started this program would else stay open for as long as the watchdog runs.
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    ::posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDERR_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, inherited.socket.get(), watchdog::kSocket);
    ::posix_spawn_file_actions_adddup2(&actions, inherited.controller.get(), watchdog::kController);
    ::posix_spawn_file_actions_adddup2(&actions, inherited.tripped.get(), watchdog::kTripped);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, watchdog::kTripped + 1);

    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    // Until it ignores them itself.
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        sigaddset(&blocked, signal);
    ::posix_spawnattr_setsigmask(&attributes, &blocked);

    std::string name = program.filename();
    char* arguments[] = {name.data(), nullptr};
    const int error = ::posix_spawn(&pid, program.c_str(), &actions, &attributes, arguments, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace

WatchdogProcess::WatchdogProcess(const std::filesystem::path& program) {
    const auto refuse = [&program](const std::string& why) {
        throw runtime::ObjectError("The watchdog " + program.string() + " cannot be started: " + why);
    };
    if (const int error = start(program)) refuse(reason(error));
    watchdog::Request hello{.kind = watchdog::Kind::Hello};
    if (const int error = ask(hello, -1, kLongestStart)) {
        kill();
        ::waitpid(pid_, nullptr, 0);
        refuse(error == ETIMEDOUT ? "it does not answer" : "it ends at once");
    }
}

int WatchdogProcess::start(const std::filesystem::path& program) {
    int pair[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0) return errno;
    socket_ = FileDescriptor(pair[0]);
    const FileDescriptor other(pair[1]);
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_SNDBUF, &kSendBufferBytes, sizeof kSendBufferBytes);
    tripped_ = FileDescriptor(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    const FileDescriptor self(::pidfd_open(::getpid(), 0));
    if (!tripped_ || !self) return errno;
    const Inherited inherited{outOfTheWay(other.get()), outOfTheWay(self.get()), outOfTheWay(tripped_.get())};
    if (!inherited.socket || !inherited.controller || !inherited.tripped) return errno;
    if (const int error = spawn(program, inherited, pid_)) return error;
    process_ = FileDescriptor(::pidfd_open(pid_, 0));
    if (process_) return 0;
    const int error = errno;
    kill();
    ::waitpid(pid_, nullptr, 0);
    return error;
}

WatchdogProcess::~WatchdogProcess() {
    tell({.kind = watchdog::Kind::Bye});
    readable(end(), kLongestEnd);
    ::waitpid(pid_, nullptr, WNOHANG);
}

int WatchdogProcess::ask(watchdog::Request& request, int descriptor) {
    return ask(request, descriptor, kLongestAnswer);
}

int WatchdogProcess::ask(watchdog::Request& request, int descriptor, milliseconds longest) {
    request.number = ++number_;
    const auto latest = Clock::now() + longest;
    if (const int error = send(request, descriptor)) return error;
    while (readable(socket_.get(), std::chrono::ceil<milliseconds>(latest - Clock::now()))) {
        watchdog::Reply reply;
        const ssize_t size = ::recv(socket_.get(), &reply, sizeof reply, MSG_DONTWAIT);
        if (size == 0) return EPIPE;
        if (size < 0 && errno != EINTR && errno != EAGAIN) return errno;
        // One that comes late belongs to a request that was given up.
        if (size == sizeof reply && reply.number == number_) return reply.error;
    }
    return ETIMEDOUT;
}

bool WatchdogProcess::tell(const watchdog::Request& request) {
    return send(request, -1) == 0;
}

void WatchdogProcess::kill() const {
    ::kill(pid_, SIGKILL);
}

bool WatchdogProcess::takeTripped() const {
    std::uint64_t count = 0;
    return ::read(tripped_.get(), &count, sizeof count) == sizeof count;
}

int WatchdogProcess::send(const watchdog::Request& request, int descriptor) const {
    iovec part{.iov_base = const_cast<watchdog::Request*>(&request), .iov_len = request.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof descriptor)] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (descriptor >= 0) {
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        cmsghdr* header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    }
    return ::sendmsg(socket_.get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL) < 0 ? errno : 0;
}

} // namespace linux_ports
