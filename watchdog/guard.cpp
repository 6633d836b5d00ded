#include "watchdog/guard.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace watchdog {

namespace {

/// While the controller hangs, the watchdog writes the outputs repeatedly: an endless loop in the controller
/// may still write them.
constexpr int kAgainMilliseconds = 100;
/// After the controller's end, a failed output is tried again at this interval, for this time.
constexpr int kRetryMilliseconds = 10;
constexpr int kLongestEndMilliseconds = 2000;

/// Receives one packet and the descriptor sent with it; -1 if there is no descriptor.
ssize_t receive(Request& request, int& descriptor) {
    descriptor = -1;
    iovec part{.iov_base = &request, .iov_len = sizeof request};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const ssize_t size = ::recvmsg(kSocket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    const cmsghdr* header = size > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (header && header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_RIGHTS)
        std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
    return size;
}

} // namespace

void Guard::run() {
    while (true) {
        awaitNews();
        // Messages sent before the end no longer matter.
        if (controllerEnded() || !readRequests()) end();
        // Checked after reading: messages that waited while this process was late must count.
        lookAtSilence();
    }
}

Guard::Milliseconds Guard::now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000LL + time.tv_nsec / 1'000'000;
}

bool Guard::controllerEnded() {
    pollfd controller{.fd = kController, .events = POLLIN, .revents = 0};
    return ::poll(&controller, 1, 0) > 0;
}

void Guard::awaitNews() const {
    Milliseconds timeout = -1;
    if (engineRuns_) {
        const Milliseconds left = lastBeat_ + kSilenceMilliseconds - now();
        timeout = hung_ ? kAgainMilliseconds : (left > 0 ? left : 0);
    }
    pollfd sources[] = {{.fd = kSocket, .events = POLLIN, .revents = 0},
                        {.fd = kController, .events = POLLIN, .revents = 0}};
    ::poll(sources, 2, static_cast<int>(timeout));
}

bool Guard::readRequests() {
    while (true) {
        Request request;
        int descriptor = -1;
        const ssize_t size = receive(request, descriptor);
        if (size < 0) return errno == EAGAIN || errno == EINTR;
        if (size == 0 || !carryOut(request, descriptor)) return false;
    }
}

bool Guard::carryOut(const Request& request, int descriptor) {
    switch (request.kind) {
    case Kind::Hello:
        reply(request, 0);
        break;
    case Kind::GuardDescriptor:
    case Kind::GuardAddress:
    case Kind::GuardLines:
    case Kind::GuardSerial:
        reply(request, port_.guard(request, descriptor));
        break;
    case Kind::ForgetPort:
        port_.forget();
        reply(request, 0);
        break;
    case Kind::GuardBoard:
        reply(request, board_.guard(request.path));
        break;
    case Kind::ForgetBoard:
        board_.forget();
        reply(request, 0);
        break;
    case Kind::Beat:
        lastBeat_ = now();
        engineRuns_ = request.engineRuns;
        hung_ = false;
        break;
    case Kind::Crash:
        switchOff();
        break;
    case Kind::Bye:
        return false;
    }
    return true;
}

void Guard::reply(const Request& request, int error) {
    const Reply answer{.number = request.number, .error = error};
    ::send(kSocket, &answer, sizeof answer, MSG_DONTWAIT | MSG_NOSIGNAL);
}

void Guard::lookAtSilence() {
    if (!engineRuns_ || now() - lastBeat_ < kSilenceMilliseconds) return;
    switchOff();
    if (hung_) return;
    hung_ = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(kTripped, &one, sizeof one);
}

void Guard::switchOff() {
    port_.off();
    board_.requestOff();
}

void Guard::end() {
    const Milliseconds latest = now() + kLongestEndMilliseconds;
    bool portIsOff = port_.off();
    board_.requestOff();
    while (now() < latest) {
        const bool portIsDone = portIsOff && port_.sent();
        // Release the port at once, so that a restarted controller can claim it while a board still hangs.
        if (portIsDone) port_.forget();
        if (portIsDone && board_.isOff()) break;
        ::poll(nullptr, 0, board_.hasFailed() || !portIsOff ? kRetryMilliseconds : 1);
        if (!portIsOff) portIsOff = port_.off();
        if (board_.hasFailed()) board_.requestOff();
    }
    ::_exit(0);
}

} // namespace watchdog
