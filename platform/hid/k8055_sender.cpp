#include "platform/hid/k8055_sender.h"

#include "runtime/errors.h"

#include <chrono>
#include <thread>

namespace hid_ports {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint8_t kSetOutputs = 5; // digital outputs and both analogue outputs at once, which stay at 0

/// A report takes about 10 ms; the kernel itself gives up after 5 s.
constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kLastByte{200};
/// How often an idle board is checked.
constexpr std::chrono::seconds kLook{1};
/// A failed board gets an "off" report at this interval, for this time.
constexpr std::chrono::milliseconds kRetry{50};
constexpr std::chrono::seconds kLongestOff{5};

/// An output report for hidraw: the report number, which the board does not use, and 8 bytes.
enum ReportByte { kNumber = 0, kCommand = 1, kDigital = 2, kAnalogue1 = 3, kAnalogue2 = 4 };

runtime::NewestByte::Time now() {
    return Clock::now().time_since_epoch();
}

/// The system's text for the device's last error.
std::string reasonOf(hid_device* device) {
    std::string words;
    const wchar_t* wide = hid_error(device);
    for (; wide && *wide != L'\0'; ++wide)
        words += *wide < 128 ? static_cast<char>(*wide) : '?';
    return words;
}

} // namespace

std::shared_ptr<Sender> Sender::start(Handle device) {
    auto sender = std::make_shared<Sender>(std::move(device));
    std::thread([sender] { sender->run(); }).detach();
    return sender;
}

void Sender::want(int byte) {
    const std::lock_guard lock(mutex_);
    byte_.want(byte);
    changed_.notify_all();
}

bool Sender::taken(int mask) {
    const std::lock_guard lock(mutex_);
    return byte_.taken(mask);
}

void Sender::check() {
    const std::lock_guard lock(mutex_);
    std::string why = failure_;
    if (why.empty() && sending_ && now() - begun_ > kPatience) why = "a report takes more than a second";
    if (why.empty()) return;
    throw runtime::ObjectError("The K8055 board does not answer any more: " + why +
                               ". Plug it in again and tick the USB box");
}

bool Sender::finish() {
    std::unique_lock lock(mutex_);
    finishing_ = true;
    changed_.notify_all();
    return changed_.wait_for(lock, kLastByte, [this] { return finished_; }) && !lit_;
}

bool Sender::finished() {
    const std::lock_guard lock(mutex_);
    return finished_;
}

bool Sender::leftNothingOn() {
    const std::lock_guard lock(mutex_);
    return finished_ && (!lit_ || gone_);
}

void Sender::run() {
    std::unique_lock lock(mutex_);
    while (failure_.empty()) {
        const auto next = byte_.next();
        if (next && (*next <= now() || finishing_)) {
            send(lock);
        } else if (next) {
            changed_.wait_until(lock, Clock::time_point(*next));
        } else if (finishing_ && lit_) {
            byte_.want(0);
        } else if (finishing_) {
            break;
        } else if (changed_.wait_for(lock, kLook) == std::cv_status::timeout) {
            look(lock);
        }
    }
    switchOff(lock);
    lock.unlock();
    device_.reset();
    lock.lock();
    finished_ = true;
    changed_.notify_all();
}

void Sender::send(std::unique_lock<std::mutex>& lock) {
    transmit(byte_.begin(), lock);
    byte_.done(now());
}

void Sender::look(std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    const bool gone = isGone();
    lock.lock();
    gone_ = gone;
    if (gone) failure_ = "it is unplugged";
}

void Sender::switchOff(std::unique_lock<std::mutex>& lock) {
    const Time latest = now() + kLongestOff;
    while (lit_ && !gone_ && now() < latest) {
        transmit(0, lock);
        if (lit_) changed_.wait_for(lock, kRetry);
    }
}

void Sender::transmit(int byte, std::unique_lock<std::mutex>& lock) {
    report_[kCommand] = kSetOutputs;
    report_[kDigital] = static_cast<std::uint8_t>(byte);
    lit_ = true; // until the board has taken a 0
    begun_ = now();
    sending_ = true;
    lock.unlock();
    const int written = hid_write(device_.get(), report_.data(), report_.size());
    std::string failure;
    if (written < 0) {
        failure = reasonOf(device_.get());
    } else if (written != kReportSize) {
        failure = "it took " + std::to_string(written) + " of " + std::to_string(kReportSize) + " bytes";
    }
    const bool gone = !failure.empty() && isGone();
    lock.lock();
    sending_ = false;
    gone_ = gone;
    if (failure.empty()) {
        lit_ = byte != 0;
    } else if (failure_.empty()) {
        failure_ = gone ? "it is unplugged" : failure;
    }
}

/// hidraw reports a hang-up for an unplugged device. The board's reports about its inputs are discarded.
bool Sender::isGone() {
    std::array<std::uint8_t, kReportSize> input{};
    return hid_read_timeout(device_.get(), input.data(), input.size(), 0) < 0;
}

} // namespace hid_ports
