#include "platform/linux/watchdog.h"

#include "runtime/errors.h"
#include "runtime/text.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <sys/eventfd.h>

namespace linux_ports {

namespace {

using watchdog::Kind;

constexpr const char* kProgramName = "twinstep-watchdog";
/// A watchdog that lived for less has not done its work; so many of these in a row, and it is given up.
constexpr std::chrono::seconds kShortLife{1};
constexpr int kShortLivesInARow = 3;

const watchdog::Request kCrash{.kind = Kind::Crash};

watchdog::Request guardOf(const std::string& device) {
    watchdog::Request request{.kind = Kind::GuardBoard};
    if (device.size() >= sizeof request.path)
        throw runtime::ObjectError(device + ": " + reason(ENAMETOOLONG));
    std::copy(device.begin(), device.end(), request.path);
    return request;
}

void ask(WatchdogProcess& process, watchdog::Request request, int descriptor, const std::string& device) {
    const int error = process.ask(request, descriptor);
    if (error == 0) return;
    const auto why = [error] {
        switch (error) {
        case ETIMEDOUT:
            return std::string("it does not answer");
        case EPIPE:
        case ECONNRESET:
            return std::string("it has ended");
        default:
            return reason(error);
        }
    };
    throw runtime::ObjectError("The watchdog cannot guard " + device + ": " + why());
}

} // namespace

/// Ends the watching, whatever has been watched by then.
class Watchdog::Watching : public FdWatch {
  public:
    explicit Watching(Watchdog& watchdog) : watchdog_(watchdog) {}
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;
    ~Watching() override {
        watchdog_.trippedWatch_.reset();
        watchdog_.endWatch_.reset();
        watchdog_.reserveWatch_.reset();
        watchdog_.missingWatch_.reset();
        watchdog_.watcher_ = nullptr;
    }

  private:
    Watchdog& watchdog_;
};

std::filesystem::path Watchdog::installedProgram() {
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    auto beside = folder / kProgramName;
    if (std::filesystem::exists(beside)) return beside;
    return (folder / "../libexec/twinstep" / kProgramName).lexically_normal();
}

Watchdog::Watchdog(std::filesystem::path program)
    : program_(std::move(program)), crashNotice_(&kCrash, kCrash.size()),
      missing_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!missing_) throw runtime::ObjectError("The watchdog cannot be watched: " + reason(errno));
    follow(start());
    standBy();
}

Watchdog::~Watchdog() {
    CrashNotice::setSocket(-1);
}

void Watchdog::guardPort(int descriptor, std::uint8_t off) {
    guard({{.kind = Kind::GuardDescriptor, .off = off}, descriptor, "the printer port"});
}

void Watchdog::guardPortAddress(unsigned address, std::uint8_t off) {
    guard({{.kind = Kind::GuardAddress, .address = address, .off = off},
           -1,
           "the printer port at " + runtime::hexText(address, "0x")});
}

void Watchdog::guardLines(int descriptor, std::uint8_t off) {
    guard({{.kind = Kind::GuardLines, .off = off}, descriptor, "the GPIO lines"});
}

void Watchdog::guardSerial(int descriptor, std::span<const std::uint8_t> off) {
    GuardedPort port{{.kind = Kind::GuardSerial}, descriptor, "the Arduino"};
    port.request.messageSize = static_cast<std::uint8_t>(off.size());
    std::ranges::copy(off, port.request.message);
    guard(port);
}

void Watchdog::guard(const GuardedPort& port) {
    require(port.request, port.descriptor, port.name);
    port_ = port;
}

void Watchdog::guardBoard(const std::string& device) {
    require(guardOf(device), -1, device);
    board_ = device;
}

void Watchdog::forgetPort() {
    port_.reset();
    forget(Kind::ForgetPort);
}

void Watchdog::forgetBoard() {
    board_.reset();
    forget(Kind::ForgetBoard);
}

void Watchdog::require(watchdog::Request request, int descriptor, const std::string& device) {
    if (!process_) replace();
    ask(*process_, request, descriptor, device);
    // One that does not guard the same must not stand by.
    if (reserve_ && reserve_->ask(request, descriptor) != 0) reserve_->kill();
}

void Watchdog::forget(Kind kind) {
    watchdog::Request request{.kind = kind};
    // One that cannot be told must not keep the port: its end frees it, and the next one does not take it.
    for (const auto* process : {&process_, &reserve_}) {
        if (*process && (*process)->ask(request) != 0) (*process)->kill();
    }
}

void Watchdog::beat(bool engineRuns) {
    engineRuns_ = engineRuns;
    // One that stands by is told of no engine, so that it does not take silence for a program that hangs.
    if (reserve_ && !reserve_->tell({.kind = Kind::Beat})) reserve_->kill();
    if (process_) {
        // A watchdog that sleeps is none.
        if (!process_->tell({.kind = Kind::Beat, .engineRuns = engineRuns})) process_->kill();
    } else if (engineRuns) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(missing_.get(), &one, sizeof one);
    }
    if (!reserveWanted_ || engineRuns) return;
    standBy();
    watchProcess();
}

std::unique_ptr<FdWatch> Watchdog::watch(FdWatcher& watcher, std::function<void()> tripped,
                                         std::function<void(const std::string&)> unguarded) {
    watcher_ = &watcher;
    tripped_ = std::move(tripped);
    unguarded_ = std::move(unguarded);
    missingWatch_ = watcher.watch(missing_.get(), [this] {
        std::uint64_t count = 0;
        if (::read(missing_.get(), &count, sizeof count) == sizeof count && !process_) onEnd();
    });
    watchProcess();
    return std::make_unique<Watching>(*this);
}

void Watchdog::watchProcess() {
    if (!watcher_ || !process_) return;
    trippedWatch_ = watcher_->watch(process_->tripped(), [this] { onTripped(); });
    endWatch_ = watcher_->watch(process_->end(), [this] { onEnd(); });
    if (!reserve_) return;
    reserveWatch_ = watcher_->watch(reserve_->end(), [this] {
        countShortLife();
        standBy();
        watchProcess();
    });
}

void Watchdog::onTripped() {
    if (process_ && process_->takeTripped()) tripped_();
}

void Watchdog::onEnd() {
    try {
        replace();
    } catch (const std::exception& error) {
        unguarded_(error.what());
    }
}

void Watchdog::countShortLife() {
    shortLives_ = Clock::now() - started_ < kShortLife ? shortLives_ + 1 : 0;
}

void Watchdog::replace() {
    trippedWatch_.reset();
    endWatch_.reset();
    if (process_) countShortLife();
    CrashNotice::setSocket(-1);
    process_.reset();
    if (shortLives_ >= kShortLivesInARow) {
        shortLives_ = 0;
        reserveWatch_.reset();
        reserve_.reset();
        throw runtime::ObjectError("The watchdog " + program_.string() + " ends again and again");
    }
    follow(reserve_ ? std::move(reserve_) : start());
    standBy();
    watchProcess();
}

void Watchdog::follow(std::unique_ptr<WatchdogProcess> process) {
    process_ = std::move(process);
    CrashNotice::setSocket(process_->socket());
    beat(engineRuns_);
}

void Watchdog::standBy() {
    reserveWatch_.reset();
    reserve_.reset();
    // Starting a process may take seconds, and engines step on this thread.
    reserveWanted_ = engineRuns_;
    if (reserveWanted_ || shortLives_ >= kShortLivesInARow) return;
    try {
        reserve_ = start();
    } catch (const std::exception&) { // The first one guards, and is replaced as soon as it ends.
    }
}

std::unique_ptr<WatchdogProcess> Watchdog::start() {
    auto process = std::make_unique<WatchdogProcess>(program_);
    started_ = Clock::now();
    if (port_) ask(*process, port_->request, port_->descriptor, port_->name);
    if (board_) ask(*process, guardOf(*board_), -1, *board_);
    return process;
}

} // namespace linux_ports
