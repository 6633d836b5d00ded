#include "platform/linux/tcp_servers.h"

#include "platform/linux/file_descriptor.h"
#include "platform/silent_end.h"
#include "runtime/errors.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <map>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace linux_ports {

namespace {

/// Bytes taken from one connection, and then none from any for a while, so that floods from many clients
/// leave the step timers their time. Programs that turn a rotator send a short line or two in a second.
constexpr std::size_t kPiece = 32;
constexpr std::chrono::milliseconds kRest{10};
constexpr int kWaiting = 16; // connections that the kernel keeps until they are accepted

void set(int fd, int level, int option, int value) {
    ::setsockopt(fd, level, option, &value, sizeof value);
}

} // namespace

/// Watches many descriptors as one: each time, one of those that can be read has its turn, and then all rest.
class TcpServers::Turns : public std::enable_shared_from_this<Turns> {
  public:
    explicit Turns(FdWatcher& watcher) : watcher_(watcher), epoll_(::epoll_create1(EPOLL_CLOEXEC)) {
        if (!epoll_) throw runtime::ObjectError("Cannot listen: " + reason(errno));
        watch_ = watcher.watch(
            epoll_.get(), [this] { serveNext(); }, kRest);
    }

    FdWatcher& watcher() { return watcher_; }
    /// As FdWatcher::watch.
    std::unique_ptr<FdWatch> watch(int fd, std::function<void()> ready) {
        epoll_event event{EPOLLIN, {.fd = fd}};
        ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event);
        ready_[fd] = std::move(ready);
        return std::make_unique<Entry>(shared_from_this(), fd);
    }

  private:
    class Entry : public FdWatch {
      public:
        Entry(std::shared_ptr<Turns> turns, int fd) : turns_(std::move(turns)), fd_(fd) {}
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry() override {
            ::epoll_ctl(turns_->epoll_.get(), EPOLL_CTL_DEL, fd_, nullptr);
            turns_->ready_.erase(fd_);
        }

      private:
        std::shared_ptr<Turns> turns_;
        int fd_;
    };

    void serveNext() {
        epoll_event event{};
        // Asked for one, the kernel names them in turn.
        if (::epoll_wait(epoll_.get(), &event, 1, 0) != 1) return;
        const auto self = shared_from_this();
        const auto ready = ready_.at(event.data.fd); // may end its own watch
        ready();
    }

    FdWatcher& watcher_;
    FileDescriptor epoll_;
    std::map<int, std::function<void()>> ready_;
    std::unique_ptr<FdWatch> watch_;
};

namespace {

using Turns = TcpServers::Turns;

class Connection : public platform::TcpConnection {
  public:
    Connection(std::shared_ptr<Turns> turns, FileDescriptor fd)
        : state_(std::make_shared<State>(std::move(turns), std::move(fd))) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    // Keeps the event handlers alive while they run, even if they destroy the connection.
    ~Connection() override {
        state_->end();
        state_->fd = FileDescriptor();
    }

    void start(Events events) override {
        set(state_->fd.get(), IPPROTO_TCP, TCP_NODELAY, 1);
        platform::noticeSilentEnd(state_->fd.get());
        state_->events = std::move(events);
        state_->readWatch = state_->turns->watch(state_->fd.get(), [state = state_] { receive(*state); });
    }

    std::size_t send(std::string_view bytes) override {
        const ssize_t sent = ::send(state_->fd.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        const std::size_t taken = sent > 0 ? static_cast<std::size_t>(sent) : 0;
        // The next read notices a broken connection and ends it.
        if (taken < bytes.size() && !state_->roomWatch) {
            state_->roomWatch = state_->turns->watcher().watchRoom(state_->fd.get(), [state = state_] {
                state->roomWatch.reset();
                state->events.writable();
            });
        }
        return taken;
    }

  private:
    struct State {
        State(std::shared_ptr<Turns> all, FileDescriptor socket)
            : turns(std::move(all)), fd(std::move(socket)) {}
        void end() {
            readWatch.reset();
            roomWatch.reset();
        }
        std::shared_ptr<Turns> turns;
        FileDescriptor fd;
        Events events;
        std::unique_ptr<FdWatch> readWatch, roomWatch;
    };

    static void receive(State& state) {
        std::array<char, kPiece> piece;
        const ssize_t size = ::recv(state.fd.get(), piece.data(), piece.size(), 0);
        if (size > 0) {
            state.events.received({piece.data(), static_cast<std::size_t>(size)});
        } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
            state.end();
            state.events.ended();
        }
    }

    std::shared_ptr<State> state_;
};

class Listener : public platform::TcpServer {
  public:
    Listener(const std::shared_ptr<Turns>& turns, FileDescriptor fd, platform::TcpServers::Accepted accepted)
        : fd_(std::move(fd)),
          // The callback may destroy this listener.
          watch_(turns->watch(fd_.get(), [turns, fd = fd_.get(), accepted = std::move(accepted)] {
              accept(turns, fd, accepted);
          })) {}

  private:
    static std::string textOf(const sockaddr_in& address) {
        std::array<char, INET_ADDRSTRLEN> text{};
        ::inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
        return text.data();
    }

    static void accept(const std::shared_ptr<Turns>& turns, int listening,
                       const platform::TcpServers::Accepted& accepted) {
        sockaddr_in peer{}, here{};
        socklen_t size = sizeof peer;
        FileDescriptor fd(
            ::accept4(listening, reinterpret_cast<sockaddr*>(&peer), &size, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!fd) return; // the peer has gone again
        size = sizeof here;
        ::getsockname(fd.get(), reinterpret_cast<sockaddr*>(&here), &size);
        accepted(std::make_unique<Connection>(turns, std::move(fd)), {textOf(peer), textOf(here)});
    }

    FileDescriptor fd_;
    std::unique_ptr<FdWatch> watch_;
};

std::string why(int error) {
    if (error == EADDRINUSE) return "another program has this port";
    if (error == EADDRNOTAVAIL) return "this computer does not have this address";
    return reason(error);
}

} // namespace

std::unique_ptr<platform::TcpServer> TcpServers::listen(const std::string& address, int port,
                                                        Accepted accepted) {
    const auto refuse = [&](int error) {
        throw runtime::ObjectError("Cannot listen on " + address + ":" + std::to_string(port) + ": " +
                                   why(error));
    };
    FileDescriptor fd(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!fd) refuse(errno);
    // Lets a restarted program use the port again at once; this does not allow a second listener.
    set(fd.get(), SOL_SOCKET, SO_REUSEADDR, 1);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(static_cast<std::uint16_t>(port));
    if (::inet_pton(AF_INET, address.c_str(), &name.sin_addr) != 1) refuse(EINVAL);
    if (::bind(fd.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
        ::listen(fd.get(), kWaiting) != 0) {
        refuse(errno);
    }
    if (!turns_) turns_ = std::make_shared<Turns>(watcher_);
    return std::make_unique<Listener>(turns_, std::move(fd), std::move(accepted));
}

} // namespace linux_ports
