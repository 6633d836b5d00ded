#include "flood.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace bench {

namespace {

sockaddr_in loopback(int port) {
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(static_cast<std::uint16_t>(port));
    name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return name;
}

int boundSocket(int type, int port) {
    const int fd = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    const sockaddr_in name = loopback(port);
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0)
        throw std::system_error(errno, std::generic_category(), "bind");
    return fd;
}

void send(int port, const std::string& datagram) {
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in name = loopback(port);
    for (;;)
        ::sendto(fd, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&name),
                 sizeof name);
}

/// Whoever connects before the process serves is kept waiting, not refused.
int listeningSocket(int port) {
    const int fd = boundSocket(SOCK_STREAM, port);
    ::listen(fd, 1);
    ::fcntl(fd, F_SETFD, 0); // the process inherits it
    return fd;
}

/// Greets whoever connects, and then says the same again and again.
void serve(int listener, std::string_view greeting, const std::string& words) {
    for (;;) {
        const int fd = ::accept(listener, nullptr, nullptr);
        const int little = 1 << 14; // what is under way when the flood stops is soon taken
        ::setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &little, sizeof little);
        std::string_view left = greeting;
        for (;;) {
            const ssize_t size = ::send(fd, left.data(), left.size(), MSG_NOSIGNAL);
            if (size < 0) break;
            left.remove_prefix(static_cast<std::size_t>(size));
            if (left.empty()) left = words;
        }
        ::close(fd);
    }
}

/// Many clients of the server at the port, each with as many requests under way as a read takes. A client
/// that finds no server, or is dropped, comes again.
void ask(int port, std::string_view request, int answerLines) {
    constexpr int kClients = 14, kUnderWay = 16;
    struct Client {
        int fd = -1;
        int linesDue = 0;
    };
    std::array<Client, kClients> clients;
    const sockaddr_in name = loopback(port);
    std::array<char, 4096> answers;
    for (;;) {
        for (Client& client : clients) {
            if (client.fd < 0) {
                client = {::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
                if (::connect(client.fd, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0)
                    ::close(std::exchange(client.fd, -1));
                continue;
            }
            while (client.linesDue < kUnderWay * answerLines) {
                if (::send(client.fd, request.data(), request.size(), MSG_NOSIGNAL) < 0) break;
                client.linesDue += answerLines;
            }
            const ssize_t size = ::recv(client.fd, answers.data(), answers.size(), MSG_DONTWAIT);
            if (size == 0) ::close(std::exchange(client.fd, -1));
            if (size > 0)
                client.linesDue -= static_cast<int>(std::count(answers.data(), answers.data() + size, '\n'));
        }
        ::usleep(1000);
    }
}

/// As many as some reads of the program take, so that the sender is not what is measured.
std::string manyTimes(std::string_view line) {
    constexpr std::size_t kEnough = 8192;
    std::string text;
    while (text.size() < kEnough)
        text += line;
    return text;
}

} // namespace

Flood::Flood(const std::string& kind, int port) {
    const bool serves = kind == "tracking" || kind == "blanks" || kind == "bridge";
    const int listener = serves ? listeningSocket(port) : -1;
    std::string program = "/proc/self/exe", mode = "pour", name = kind,
                number = std::to_string(serves ? listener : port);
    std::array<char*, 5> arguments = {program.data(), mode.data(), name.data(), number.data(), nullptr};
    if (::posix_spawn(&process_, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("no process for " + kind);
    if (serves) ::close(listener);
    stop();
}

Flood::~Flood() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

void Flood::start() {
    ::kill(process_, SIGCONT);
}

void Flood::stop() {
    ::kill(process_, SIGSTOP);
}

void pour(const std::string& kind, int portOrListener) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string contact = "<RadioInfo><RadioNr>1</RadioNr><TXFreq>1402500</TXFreq></RadioInfo>";
    if (kind == "datagrams") send(portOrListener, contact);
    if (kind == "long datagrams") send(portOrListener, std::string(60000, ' ') + contact);
    if (kind == "tracking") serve(portOrListener, "\n", manyTimes("ISS AZ123.4 EL45.6 MORE\r\n"));
    if (kind == "blanks") serve(portOrListener, "\n", "ISS AZ123.4 EL45.6" + std::string(60000, ' ') + '\n');
    if (kind == "bridge")
        serve(portOrListener, "hello 1 bench 1\nopened 1\n",
              manyTimes("changed 1 14200000\nchanged 1 14200001\n"));
    if (kind == "rotctld") ask(portOrListener, "p\n", 2);
    throw std::runtime_error("no such flood: " + kind);
}

int freePort() {
    constexpr int kFirst = 20000, kLast = 32000; // what save.cfg can hold, and the system gives to nobody
    static int port = kFirst;
    while (++port < kLast) {
        try {
            for (const int type : {SOCK_STREAM, SOCK_DGRAM})
                ::close(boundSocket(type, port));
            return port;
        } catch (const std::system_error&) {
            // Taken: the next one.
        }
    }
    throw std::runtime_error("no free port");
}

} // namespace bench
