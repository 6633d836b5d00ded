#include "watchdog/usb_board.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

namespace watchdog {

namespace {

/// Report number 0, which hidraw needs before the 8 bytes; then command 5, the digital byte and both analogue
/// outputs.
constexpr std::uint8_t kAllOff[] = {0, 5, 0, 0, 0, 0, 0, 0, 0};

constexpr std::size_t kStackBytes = std::size_t{64} * 1024;

class Lock {
  public:
    explicit Lock(pthread_mutex_t& mutex) : mutex_(mutex) { ::pthread_mutex_lock(&mutex_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { ::pthread_mutex_unlock(&mutex_); }

  private:
    pthread_mutex_t& mutex_;
};

} // namespace

int UsbBoard::guard(const char* path) {
    if (const int error = startThread()) return error;
    const int descriptor = ::open(path, O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) return errno;
    forget();
    const Lock lock(mutex_);
    descriptor_ = descriptor;
    failed_ = false;
    return 0;
}

void UsbBoard::forget() {
    const Lock lock(mutex_);
    // A descriptor with a write under way is closed after the write, so that its number is not reused
    // meanwhile.
    if (descriptor_ >= 0 && descriptor_ != written_) ::close(descriptor_);
    descriptor_ = -1;
    wanted_ = false;
}

void UsbBoard::requestOff() {
    const Lock lock(mutex_);
    if (descriptor_ < 0) return;
    wanted_ = true;
    ::pthread_cond_signal(&wake_);
}

bool UsbBoard::isOff() {
    const Lock lock(mutex_);
    return descriptor_ < 0 || (!wanted_ && written_ < 0 && !failed_);
}

bool UsbBoard::hasFailed() {
    const Lock lock(mutex_);
    return descriptor_ >= 0 && !wanted_ && written_ < 0 && failed_;
}

int UsbBoard::startThread() {
    if (hasThread_) return 0;
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setstacksize(&attributes, kStackBytes); // small: users may lock only a little memory
    pthread_t thread{};
    const int error = ::pthread_create(&thread, &attributes, run, this);
    ::pthread_attr_destroy(&attributes);
    hasThread_ = error == 0;
    return error;
}

void* UsbBoard::run(void* self) {
    static_cast<UsbBoard*>(self)->writeRequests();
    return nullptr;
}

void UsbBoard::writeRequests() {
    const Lock lock(mutex_);
    while (true) {
        while (!wanted_)
            ::pthread_cond_wait(&wake_, &mutex_);
        wanted_ = false;
        written_ = descriptor_;
        ::pthread_mutex_unlock(&mutex_);
        const ssize_t size = ::write(written_, kAllOff, sizeof kAllOff);
        const bool gone = size < 0 && errno == ENODEV;
        ::pthread_mutex_lock(&mutex_);
        if (written_ == descriptor_) {
            failed_ = size != static_cast<ssize_t>(sizeof kAllOff) && !gone;
        } else {
            ::close(written_);
        }
        written_ = -1;
    }
}

} // namespace watchdog
