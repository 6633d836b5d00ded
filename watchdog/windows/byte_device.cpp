#include "watchdog/windows/byte_device.h"

namespace watchdog {

namespace {

constexpr DWORD kPatience = 80;  // milliseconds, for a device that takes bytes
constexpr DWORD kCancelling = 5; // milliseconds

} // namespace

void ByteDevice::hold(HANDLE device) {
    if (device_) CloseHandle(device_);
    device_ = device;
}

void ByteDevice::send(const unsigned char* bytes, DWORD size) {
    if (!device_) return;
    size_ = 0;
    // What waits to be sent may switch coils on. No other device than a serial port knows this call.
    PurgeComm(device_, PURGE_TXABORT | PURGE_TXCLEAR);
    if (!settled(0)) CancelIoEx(device_, &state_);
    if (!settled(kCancelling)) return;
    state_ = {};
    state_.hEvent = done_;
    if (WriteFile(device_, bytes, size, nullptr, &state_) || GetLastError() == ERROR_IO_PENDING) {
        size_ = size;
    } else {
        SetEvent(done_);
    }
}

bool ByteDevice::finish() {
    if (!device_) return true;
    DWORD written = 0;
    return size_ != 0 && settled(kPatience) && GetOverlappedResult(device_, &state_, &written, FALSE) &&
           written == size_;
}

bool ByteDevice::settled(DWORD patience) {
    return WaitForSingleObject(done_, patience) == WAIT_OBJECT_0;
}

} // namespace watchdog
