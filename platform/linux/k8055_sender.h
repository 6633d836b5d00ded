#pragma once

#include "runtime/newest_byte.h"

#include <array>
#include <condition_variable>
#include <cstdint>
#include <hidapi/hidapi.h>
#include <memory>
#include <mutex>
#include <string>

namespace linux_ports {

/// An open K8055 board and the thread that sends to it. The thread ends by itself, also after the object that
/// opened the board has lost patience with it. Only finish waits for the board.
class Sender {
  public:
    struct CloseHandle {
        void operator()(hid_device* device) const { hid_close(device); }
    };
    using Handle = std::unique_ptr<hid_device, CloseHandle>;

    static std::shared_ptr<Sender> start(Handle device);
    explicit Sender(Handle device) : device_(std::move(device)) {}

    /// The outputs to be on the board, 0 to 255, in place of a byte that it has not been sent yet.
    void want(int byte);
    /// Whether the outputs in `mask` are on the board as last wanted.
    bool taken(int mask);
    /// Throws runtime::ObjectError when the board has failed.
    void check();

    /// Lets the device go once all outputs are off, which is tried for some seconds where the board fails.
    /// Waits 0.2 s for that, and returns whether they are off.
    bool finish();
    /// Whether the device has been let go.
    bool finished();
    /// Whether it has been let go with its outputs off, or is not there any more.
    bool leftNothingOn();

  private:
    using Time = runtime::NewestByte::Time;

    void run();
    /// Sends the byte that is due.
    void send(std::unique_lock<std::mutex>& lock);
    /// Looks whether the board is still there.
    void look(std::unique_lock<std::mutex>& lock);
    /// After a failure, for a board that stays plugged in.
    void switchOff(std::unique_lock<std::mutex>& lock);
    /// Sends one report, and notes a failure.
    void transmit(int byte, std::unique_lock<std::mutex>& lock);
    bool isGone();

    Handle device_; // the thread's own
    // All that the board is sent.
    static constexpr std::size_t kReportSize = 9;
    std::array<std::uint8_t, kReportSize> report_{};

    std::mutex mutex_; // for all below
    std::condition_variable changed_;
    runtime::NewestByte byte_;
    std::string failure_;
    bool sending_ = false;
    Time begun_{};      // of the report under way
    bool lit_ = false;  // an output may be on
    bool gone_ = false; // unplugged
    bool finishing_ = false, finished_ = false;
};

} // namespace linux_ports
