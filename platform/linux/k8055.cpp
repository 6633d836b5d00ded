#include "platform/linux/k8055.h"

#include "platform/linux/file_descriptor.h"
#include "runtime/errors.h"
#include "runtime/newest_byte.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <fcntl.h>
#include <hidapi/hidapi.h>
#include <mutex>
#include <thread>

namespace linux_ports {

namespace {

using Time = runtime::NewestByte::Time;
using Clock = std::chrono::steady_clock;

constexpr unsigned short kVendor = 0x10cf;       // Velleman
constexpr unsigned short kFirstProduct = 0x5500; // plus the card's address
constexpr std::uint8_t kSetOutputs = 5;          // digital outputs and both analogue outputs at once
constexpr int kNoCard = -1;

/// A board has its report after some 10 ms; the kernel itself gives up after 5 s.
constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kLastByte{200};

/// An output report as hidraw wants it: the number of the report, which the board does not use, and 8 bytes.
enum ReportByte { kNumber = 0, kCommand = 1, kDigital = 2, kAnalogue1 = 3, kAnalogue2 = 4, kReportSize = 9 };

struct CloseHandle {
    void operator()(hid_device* device) const { hid_close(device); }
};
using Handle = std::unique_ptr<hid_device, CloseHandle>;

Time now() {
    return Clock::now().time_since_epoch();
}

/// Device nodes of the boards with this address.
std::vector<std::string> pathsOf(int card) {
    const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> found(
        hid_enumerate(kVendor, static_cast<unsigned short>(kFirstProduct + card)), &hid_free_enumeration);
    std::vector<std::string> paths;
    for (const hid_device_info* info = found.get(); info; info = info->next)
        paths.emplace_back(info->path);
    return paths;
}

std::string whyNotOpened(const std::string& path) {
    const FileDescriptor fd(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    const int error = errno;
    const std::string words = "The K8055 board is there, but " + path + " cannot be opened: ";
    if (fd) return words + "it is no device that takes reports";
    if (error != EACCES && error != EPERM) return words + reason(error);
    return words +
           "no permission. The udev rule that comes with the program gives it; install it and plug the " +
           "board in again, or for now: sudo chmod a+rw " + path;
}

/// The system's words for what went wrong last with the device.
std::string reasonOf(hid_device* device) {
    std::string words;
    const wchar_t* wide = hid_error(device);
    for (; wide && *wide != L'\0'; ++wide)
        words += *wide < 128 ? static_cast<char>(*wide) : '?';
    return words;
}

} // namespace

/// An open board and the thread that sends to it. The thread ends by itself, also after the object that
/// opened the board has lost patience with it.
class K8055::Link {
  public:
    static std::shared_ptr<Link> start(Handle device) {
        auto link = std::make_shared<Link>(std::move(device));
        std::thread([link] { link->run(); }).detach();
        return link;
    }
    explicit Link(Handle device) : device_(std::move(device)) {}

    void want(int byte) {
        const std::lock_guard lock(mutex_);
        byte_.want(byte);
        changed_.notify_all();
    }

    bool taken(int mask) {
        const std::lock_guard lock(mutex_);
        return byte_.taken(mask);
    }

    /// Throws when the board has failed.
    void check() {
        const std::lock_guard lock(mutex_);
        std::string why = failure_;
        if (why.empty() && sending_ && now() - begun_ > kPatience) why = "a report takes more than a second";
        if (why.empty()) return;
        throw runtime::ObjectError("The K8055 board does not answer any more: " + why +
                                   ". Plug it in again and tick the USB box");
    }

    /// Lets go of the device as soon as the last byte has been sent, and waits a moment for it.
    bool finish() {
        std::unique_lock lock(mutex_);
        finishing_ = true;
        changed_.notify_all();
        return changed_.wait_for(lock, kLastByte, [this] { return finished_; }) && failure_.empty();
    }

    /// Whether the device has been let go.
    bool finished() {
        const std::lock_guard lock(mutex_);
        return finished_;
    }

  private:
    void run() {
        std::unique_lock lock(mutex_);
        while (failure_.empty()) {
            const auto next = byte_.next();
            if (!next && finishing_) break;
            if (!next) {
                changed_.wait(lock);
            } else if (*next > now() && !finishing_) {
                changed_.wait_until(lock, Clock::time_point(*next));
            } else {
                send(lock);
            }
        }
        lock.unlock();
        device_.reset();
        lock.lock();
        finished_ = true;
        changed_.notify_all();
    }

    void send(std::unique_lock<std::mutex>& lock) {
        report_[kDigital] = static_cast<std::uint8_t>(byte_.begin());
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
        lock.lock();
        sending_ = false;
        failure_ = failure;
        byte_.done(now());
    }

    Handle device_; // the thread's own
    // All that the board is sent; both analogue outputs stay at 0.
    std::array<std::uint8_t, kReportSize> report_{0, kSetOutputs};

    std::mutex mutex_; // for all below
    std::condition_variable changed_;
    runtime::NewestByte byte_;
    std::string failure_;
    bool sending_ = false;
    Time begun_{}; // of the report under way
    bool finishing_ = false, finished_ = false;
};

K8055::K8055(int card, Observer observer) : card_(card), observer_(std::move(observer)) {
    if (card < 0 || card >= kCards) {
        throw runtime::ObjectError("A K8055 board has an address from 0 to 3, not " + std::to_string(card));
    }
}

K8055::~K8055() {
    close();
}

int K8055::openDevice(int address) {
    close();
    refusal_.clear();
    // The kernel lets nobody open such a device while it waits for a report to end.
    if (const auto old = lettingGo_.lock(); old && !old->finished()) {
        refusal_ =
            "The K8055 board still does not answer to its last report. Unplug it, or try again in a while";
        return kNoCard;
    }
    const int card = address == 0 ? card_ : address;
    for (const std::string& path : pathsOf(card)) {
        Handle device(hid_open_path(path.c_str()));
        if (!device) {
            refusal_ = whyNotOpened(path);
            continue;
        }
        refusal_.clear();
        link_ = Link::start(std::move(device));
        if (observer_.opened) observer_.opened(path);
        return card;
    }
    return kNoCard;
}

void K8055::writeAllDigital(int outputs) {
    if (!link_) return;
    link_->want(outputs);
    link_->check();
}

bool K8055::taken(int mask) {
    if (!link_) return true;
    link_->check();
    return link_->taken(mask);
}

void K8055::closeDevice() {
    if (!close()) throw runtime::ObjectError("The K8055 board has not taken its last byte");
}

bool K8055::close() {
    if (!link_) return true;
    const auto link = std::exchange(link_, nullptr);
    const bool inTime = link->finish();
    lettingGo_ = link;
    if (observer_.closed) observer_.closed();
    return inTime;
}

} // namespace linux_ports
