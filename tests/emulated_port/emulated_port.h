#pragma once

#include "tests/emulated_port/state.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/file.h>
#include <unistd.h>

/// The file behind an emulated printer port and GPIO chip, seen from the test; programs see it as
/// /dev/parport0 and /dev/gpiochip0 when they have `environment`. Its lines start with every coil on.
class EmulatedPort {
  public:
    static constexpr int kAllOff = 0xFF;

    /// `off` are the lines at which no coil is energised.
    explicit EmulatedPort(std::filesystem::path path, int off = kAllOff)
        : path_(std::move(path)), off_(off),
          fd_(::open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
        setData(static_cast<std::uint8_t>(~off));
    }
    EmulatedPort(const EmulatedPort&) = delete;
    EmulatedPort& operator=(const EmulatedPort&) = delete;
    ~EmulatedPort() { ::close(fd_); }

    const std::filesystem::path& path() const { return path_; }

    EmulatedPortState state() const {
        EmulatedPortState state;
        [[maybe_unused]] const ssize_t size = ::pread(fd_, &state, sizeof state, 0);
        return state;
    }
    /// Lines that nobody holds fall to their pull.
    int data() const {
        const EmulatedPortState now = state();
        if (!now.areLines || !claim()) return now.data;
        release();
        return now.pull;
    }
    bool isOff() const { return data() == off_; }
    void setData(std::uint8_t data) {
        EmulatedPortState state;
        state.data = data;
        [[maybe_unused]] const ssize_t size = ::pwrite(fd_, &state, sizeof state, 0);
    }

    /// As another driver would; true when nobody else has it.
    bool claim() const { return ::flock(fd_, LOCK_EX | LOCK_NB) == 0; }
    void release() const { ::flock(fd_, LOCK_UN); }

  private:
    std::filesystem::path path_;
    int off_;
    int fd_;
};
