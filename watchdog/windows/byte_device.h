#pragma once

#include <windows.h>

namespace watchdog {

/// A device that takes bytes: a serial port or a HID board. Never waits long, so that a device that hangs
/// delays nothing else.
class ByteDevice {
  public:
    /// The device is this object's from now on, opened for overlapped operations; null: none.
    void hold(HANDLE device);
    explicit operator bool() const { return device_ != nullptr; }

    /// Starts to send; finish tells the result. `bytes` must outlive this object.
    void send(const unsigned char* bytes, DWORD size);
    /// Whether the device has taken all, or there is none.
    bool finish();

  private:
    /// False while the last bytes are still under way.
    bool settled(DWORD patience);

    HANDLE device_ = nullptr;
    HANDLE done_ = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    OVERLAPPED state_{};
    DWORD size_ = 0; // of the bytes that are under way; 0: the device has refused them
};

} // namespace watchdog
