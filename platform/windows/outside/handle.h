#pragma once

#include <utility>
#include <windows.h>

namespace windows_ports {

/// Owns a handle of the kernel.
class Handle {
  public:
    /// Null and INVALID_HANDLE_VALUE stand for none.
    explicit Handle(HANDLE handle = nullptr) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() {
        if (handle_) CloseHandle(handle_);
    }

    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HANDLE handle_;
};

} // namespace windows_ports
