#include "platform/windows/outside/watchdog.h"

#include "platform/windows/outside/work_folder.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

namespace windows_ports {

namespace {

using watchdog::Kind;
using watchdog::Request;

/// A watchdog that lived for less has not done its work; so many of these in a row, and it is given up.
constexpr std::chrono::seconds kShortLife{1};
constexpr int kShortLivesInARow = 3;

/// What the system's handler for crashes needs, and nothing else that a crash may have harmed.
std::atomic<watchdog::Shared*> crashShared = nullptr;
std::atomic<HANDLE> crashEvent = nullptr;

/// The system may write a report for seconds before the process ends.
LONG WINAPI onCrash(EXCEPTION_POINTERS* /*what*/) noexcept {
    if (watchdog::Shared* const shared = crashShared) {
        shared->crashed = 1;
        SetEvent(crashEvent);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

void ask(WatchdogProcess& process, const Request& request, const std::string& device) {
    const DWORD error = process.ask(request);
    if (error == 0) return;
    throw runtime::ObjectError("The watchdog cannot guard " + device + ": " +
                               (error == ERROR_TIMEOUT       ? "it does not answer"
                                : error == ERROR_BROKEN_PIPE ? "it has ended"
                                                             : reason(error)));
}

} // namespace

void Watchdog::Port::guardedBy(WatchdogProcess& process) const {
    Request request{.kind = serial ? Kind::GuardSerial : Kind::GuardAddress};
    request.size = static_cast<std::uint32_t>(std::min(off.size(), watchdog::kMostBytes));
    std::copy_n(off.begin(), request.size, static_cast<std::uint8_t*>(request.off));
    request.address = address;
    if (serial) request.handle = reinterpret_cast<std::uintptr_t>(process.share(serial));
    ask(process, request,
        serial ? "the board on the serial port" : "the printer port at " + runtime::hexText(address, "0x"));
}

void Watchdog::Board::guardedBy(WatchdogProcess& process) const {
    Request request{.kind = Kind::GuardBoard};
    const std::wstring name = wide(path);
    if (name.size() >= watchdog::kLongestPath)
        throw runtime::ObjectError(path + ": " + reason(ERROR_FILENAME_EXCED_RANGE));
    std::ranges::copy(name, static_cast<wchar_t*>(request.path));
    request.card = static_cast<std::uint32_t>(card);
    ask(process, request, "the K8055 board");
}

std::filesystem::path Watchdog::installedProgram() {
    return programFolder() / "twinstep-watchdog.exe";
}

Watchdog::Watchdog(std::filesystem::path program) : program_(std::move(program)) {
    follow(start());
    standBy();
    SetUnhandledExceptionFilter(onCrash);
}

Watchdog::~Watchdog() {
    SetUnhandledExceptionFilter(nullptr);
    crashShared = nullptr;
}

void Watchdog::guardPortAddress(unsigned address, std::uint8_t off) {
    guard({.address = address, .off = {off}});
}

void Watchdog::guardSerial(HANDLE port, std::vector<std::uint8_t> off) {
    guard({.serial = port, .off = std::move(off)});
}

void Watchdog::guard(Port port) {
    require(port);
    port_ = std::move(port);
}

void Watchdog::guardBoard(const std::string& path, int card) {
    Board board{path, card};
    require(board);
    board_ = std::move(board);
}

void Watchdog::forgetPort() {
    port_.reset();
    forget(Kind::ForgetPort);
}

void Watchdog::forgetBoard() {
    board_.reset();
    forget(Kind::ForgetBoard);
}

template <class Device>
void Watchdog::require(const Device& device) {
    if (!process_) replace();
    device.guardedBy(*process_);
    if (!reserve_) return;
    try {
        device.guardedBy(*reserve_);
    } catch (const runtime::ObjectError&) { // One that does not guard the same must not stand by.
        reserve_->kill();
    }
}

void Watchdog::forget(Kind kind) {
    // One that cannot be told must not keep the device: its end frees it, and the next one does not take it.
    for (const auto* process : {&process_, &reserve_}) {
        if (*process && (*process)->ask({.kind = kind}) != 0) (*process)->kill();
    }
}

void Watchdog::beat(bool engineRuns) {
    const bool starts = engineRuns && !engineRuns_;
    engineRuns_ = engineRuns;
    if (process_) {
        process_->beat(engineRuns);
    } else if (starts) {
        mailbox_.slot().post([this] {
            if (!process_) ended();
        });
    }
    if (reserveWanted_ && !engineRuns) standBy();
}

void Watchdog::watch(std::function<void()> tripped, std::function<void(const std::string&)> unguarded) {
    tripped_ = std::move(tripped);
    unguarded_ = std::move(unguarded);
}

void Watchdog::ended() {
    try {
        replace();
    } catch (const runtime::ObjectError& error) {
        if (unguarded_) unguarded_(error.what());
    }
}

void Watchdog::countShortLife() {
    shortLives_ = Clock::now() - started_ < kShortLife ? shortLives_ + 1 : 0;
}

void Watchdog::replace() {
    crashShared = nullptr;
    trippedWait_.reset();
    endWait_.reset();
    reserveWait_.reset();
    if (process_) countShortLife();
    process_.reset();
    if (shortLives_ >= kShortLivesInARow) {
        shortLives_ = 0;
        reserve_.reset();
        throw runtime::ObjectError("The watchdog " + program_.string() + " ends again and again");
    }
    follow(reserve_ ? std::move(reserve_) : start());
    standBy();
}

std::unique_ptr<WatchdogProcess> Watchdog::start() {
    auto process = std::make_unique<WatchdogProcess>(program_);
    started_ = Clock::now();
    if (port_) port_->guardedBy(*process);
    if (board_) board_->guardedBy(*process);
    return process;
}

void Watchdog::follow(std::unique_ptr<WatchdogProcess> process) {
    process_ = std::move(process);
    process_->beat(engineRuns_);
    crashEvent = process_->requestEvent();
    crashShared = &process_->shared();
    trippedWait_ = std::make_unique<Wait>(
        mailbox_, process_->tripped(),
        [this] {
            if (tripped_) tripped_();
        },
        false);
    endWait_ = std::make_unique<Wait>(
        mailbox_, process_->process(), [this] { ended(); }, true);
}

void Watchdog::standBy() {
    reserveWait_.reset();
    reserve_.reset();
    // Starting a process may take seconds, and engines step on this thread.
    reserveWanted_ = engineRuns_;
    if (reserveWanted_ || shortLives_ >= kShortLivesInARow) return;
    try {
        reserve_ = start();
        reserveWait_ = std::make_unique<Wait>(
            mailbox_, reserve_->process(),
            [this] {
                countShortLife();
                standBy();
            },
            true);
    } catch (const runtime::ObjectError&) { // The first one guards, and is replaced as soon as it ends.
    }
}

} // namespace windows_ports
