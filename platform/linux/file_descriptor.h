#pragma once

#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace linux_ports {

/// Owns a descriptor.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd = -1) : fd_(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }

    int get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }

  private:
    int fd_;
};

/// The system's text for an errno.
inline std::string reason(int error) {
    return std::generic_category().message(error);
}

} // namespace linux_ports
