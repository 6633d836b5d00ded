#include "tests/emulated_board/pty_board.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

PtyBoard::PtyBoard(std::filesystem::path device, Sketch::Kind kind)
    : device_(std::move(device)), sketch_(std::move(kind)) {
    plugIn();
    thread_ = std::thread([this] { run(); });
}

PtyBoard::~PtyBoard() {
    ends_ = true;
    thread_.join();
    unplug();
}

void PtyBoard::plugIn() {
    const std::lock_guard lock(mutex_);
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ::grantpt(master_);
    ::unlockpt(master_);
    const std::string name = ::ptsname(master_);
    // Kept open, so that the settings of the terminal stay, and nobody sees the echo of a new one.
    slave_ = ::open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    ::tcgetattr(slave_, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(slave_, TCSANOW, &settings);
    opens_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ::inotify_add_watch(opens_, name.c_str(), IN_OPEN | IN_CLOSE);
    std::filesystem::create_symlink(name, device_);
    sketch_.reset(now());
}

void PtyBoard::unplug() {
    const std::lock_guard lock(mutex_);
    if (master_ < 0) return;
    std::filesystem::remove(device_);
    for (int* fd : {&opens_, &slave_, &master_}) {
        ::close(*fd);
        *fd = -1;
    }
    sketch_.reset(now());
}

void PtyBoard::setMute(bool mute) {
    const std::lock_guard lock(mutex_);
    sketch_.setMute(mute);
}

void PtyBoard::setDeaf(bool deaf) {
    const std::lock_guard lock(mutex_);
    deaf_ = deaf;
}

int PtyBoard::levels() {
    const std::lock_guard lock(mutex_);
    return sketch_.levels();
}

std::vector<Sketch::Change> PtyBoard::takeChanges() {
    const std::lock_guard lock(mutex_);
    return sketch_.takeChanges();
}

std::vector<std::string> PtyBoard::faults() {
    const std::lock_guard lock(mutex_);
    return sketch_.faults();
}

void PtyBoard::run() {
    using namespace std::chrono_literals;
    while (!ends_) {
        {
            const std::lock_guard lock(mutex_);
            if (master_ >= 0) work();
        }
        std::this_thread::sleep_for(500us);
    }
}

void PtyBoard::work() {
    std::array<char, 4096> events{};
    if (const ssize_t size = ::read(opens_, events.data(), events.size()); size > 0) {
        bool opened = false;
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events.data() + at);
            opened |= (event->mask & IN_OPEN) != 0;
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        ::ioctl(slave_, TIOCNXCL); // the last close would do so
        if (opened) sketch_.reset(now());
    }
    if (deaf_) return;
    Sketch::Bytes bytes(256);
    const ssize_t size = ::read(master_, bytes.data(), bytes.size());
    bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    sketch_.receive(bytes, now());
    const Sketch::Bytes replies = sketch_.work(now());
    if (!replies.empty()) [[maybe_unused]]
        const ssize_t sent = ::write(master_, replies.data(), replies.size());
}
