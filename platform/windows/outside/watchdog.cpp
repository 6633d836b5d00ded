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

} // namespace

std::filesystem::path Watchdog::installedProgram() {
    return programFolder() / "twinstep-watchdog.exe";
}

Watchdog::Watchdog(std::filesystem::path program) : program_(std::move(program)) {
    start();
    SetUnhandledExceptionFilter(onCrash);
}

Watchdog::~Watchdog() {
    SetUnhandledExceptionFilter(nullptr);
    crashShared = nullptr;
}

void Watchdog::start() {
    auto process = std::make_unique<WatchdogProcess>(program_);
    process->beat(engineRuns_);
    crashShared = nullptr;
    trippedWait_.reset();
    endWait_.reset();
    process_ = std::move(process);
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

void Watchdog::require(const Port& port) {
    if (!process_) replace();
    Request request{.kind = port.serial ? Kind::GuardSerial : Kind::GuardAddress};
    const std::size_t size = std::min(port.off.size(), watchdog::kMostBytes);
    std::copy_n(port.off.begin(), size, static_cast<std::uint8_t*>(request.off));
    request.size = static_cast<std::uint32_t>(size);
    request.address = port.address;
    if (port.serial) request.handle = reinterpret_cast<std::uintptr_t>(process_->share(port.serial));
    require(request, port.serial ? "the board on the serial port"
                                 : "the printer port at " + runtime::hexText(port.address, "0x"));
}

void Watchdog::require(const Board& board) {
    Request request{.kind = Kind::GuardBoard};
    const std::wstring path = wide(board.path);
    if (path.size() >= watchdog::kLongestPath)
        throw runtime::ObjectError(board.path + ": " + reason(ERROR_FILENAME_EXCED_RANGE));
    std::ranges::copy(path, static_cast<wchar_t*>(request.path));
    request.card = static_cast<std::uint32_t>(board.card);
    require(request, "the K8055 board");
}

void Watchdog::require(const Request& request, const std::string& device) {
    if (!process_) replace();
    const DWORD error = process_->ask(request);
    if (error == 0) return;
    throw runtime::ObjectError("The watchdog cannot guard " + device + ": " +
                               (error == ERROR_TIMEOUT       ? "it does not answer"
                                : error == ERROR_BROKEN_PIPE ? "it has ended"
                                                             : reason(error)));
}

void Watchdog::forget(Kind kind) {
    // One that cannot be told must not keep the device: its end frees it, and the next one does not take it.
    if (process_ && process_->ask({.kind = kind}) != 0) process_->kill();
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

void Watchdog::replace() {
    crashShared = nullptr;
    trippedWait_.reset();
    endWait_.reset();
    process_.reset();
    start();
    if (port_) require(*port_);
    if (board_) require(*board_);
}

} // namespace windows_ports
