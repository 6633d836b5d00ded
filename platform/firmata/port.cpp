#include "platform/firmata/port.h"

#include "runtime/errors.h"

#include <algorithm>

namespace firmata {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAll = (1 << kOutputs) - 1;
constexpr std::chrono::milliseconds kLastPattern{200};
constexpr std::size_t kReadBytes = 256;
/// How often a driver that has taken only a part is tried again.
constexpr Board::Time kRetry = std::chrono::milliseconds(1);

Board::Time now() {
    return Clock::now().time_since_epoch();
}

} // namespace

Port::Port(std::unique_ptr<platform::SerialPort> serial, std::string name, const Wiring& wiring)
    : name_(std::move(name)), offMessage_(offMessage(wiring)), off_(wiring.off), levels_(wiring.off),
      serial_(std::move(serial)), board_(wiring, now()), thread_([this] { run(); }) {}

Port::~Port() {
    {
        const std::lock_guard lock(mutex_);
        board_.want(off_);
        endsBy_ = now() + kLastPattern;
        serial_->wake();
    }
    thread_.join();
}

void Port::endPattern() {
    const std::lock_guard lock(mutex_);
    check();
    board_.want(levels_);
    send();
    check();
    if (board_.next() < waitsUntil_) serial_->wake();
}

bool Port::taken(int mask) {
    const std::lock_guard lock(mutex_);
    check();
    return board_.taken(mask);
}

std::string Port::notReady() {
    const std::lock_guard lock(mutex_);
    check();
    return board_.ready() ? std::string() : name_ + " is starting, which takes up to 10 s";
}

void Port::run() {
    std::array<std::uint8_t, kReadBytes> buffer{};
    std::unique_lock lock(mutex_);
    while (failure_.empty()) {
        send();
        if (!failure_.empty() || done()) break;
        waitsUntil_ = rest_.empty() ? board_.next() : now() + kRetry;
        if (endsBy_) waitsUntil_ = std::min(waitsUntil_, now() + kRetry);
        lock.unlock();
        std::size_t size = 0;
        std::string failure;
        try {
            size = serial_->read(buffer, std::max(Board::Time::zero(), waitsUntil_ - now()));
        } catch (const std::exception& error) {
            failure = error.what();
        }
        lock.lock();
        board_.hear(std::span(buffer).first(size), now());
        if (failure_.empty()) failure_ = failure.empty() ? board_.faultAt(now()) : failure;
    }
    const bool delivered = failure_.empty() && rest_.empty() && board_.idle(now());
    if (board_.ready() && !delivered) {
        // A board that reads, now or later, is not left with coils on. It ends what was sent by half.
        try {
            serial_->write(offMessage_);
        } catch (const std::exception&) { // it is gone
        }
    }
}

bool Port::done() const {
    if (!endsBy_) return false;
    // A board that is not ready has not been sent any pattern.
    return now() >= *endsBy_ || !board_.ready() || (rest_.empty() && board_.idle(now()));
}

void Port::send() {
    try {
        if (rest_.empty()) rest_ = board_.takeDue(now());
        if (rest_.empty()) return;
        const auto taken = serial_->write(rest_);
        rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(taken));
    } catch (const std::exception& error) {
        failure_ = error.what();
        serial_->wake();
    }
}

void Port::check() const {
    if (!failure_.empty()) throw runtime::ObjectError(name_ + ": " + failure_);
}

} // namespace firmata
