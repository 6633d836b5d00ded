#pragma once

#include "runtime/newest_byte.h"

#include <array>
#include <condition_variable>
#include <cstdint>
#include <hidapi/hidapi.h>
#include <memory>
#include <mutex>
#include <string>

namespace hid_ports {

/// An open K8055 board and the thread that sends to it. The thread ends by itself, even if the opener has
/// stopped waiting for it. Only finish waits for the board.
class Sender {
  public:
    struct CloseHandle {
        void operator()(hid_device* device) const { hid_close(device); }
    };
    using Handle = std::unique_ptr<hid_device, CloseHandle>;

    static std::shared_ptr<Sender> start(Handle device);
    explicit Sender(Handle device) : device_(std::move(device)) {}

    /// Sets the outputs, 0 to 255; replaces a byte that has not been sent yet.
    void want(int byte);
    /// Whether the board has the last wanted values of the outputs in `mask`.
    bool taken(int mask);
    /// Throws runtime::ObjectError when the board has failed.
    void check();

    /// Closes the device once all outputs are off; a failing board gets "off" reports for some seconds. Waits
    /// 0.2 s, and returns whether the outputs are off.
    bool finish();
    /// Whether the device has been closed.
    bool finished();
    /// Whether the device has been closed with its outputs off, or is unplugged.
    bool leftNothingOn();

  private:
    using Time = runtime::NewestByte::Time;

    void run();
    /// Sends the byte that is due.
    void send(std::unique_lock<std::mutex>& lock);
    /// Checks whether the board is still there.
    void look(std::unique_lock<std::mutex>& lock);
    /// After a failure, for a board that stays plugged in.
    void switchOff(std::unique_lock<std::mutex>& lock);
    /// Sends one report, and notes a failure.
    void transmit(int byte, std::unique_lock<std::mutex>& lock);
    bool isGone();

    Handle device_; // used only by the thread
    // All that the board is sent.
    static constexpr std::size_t kReportSize = 9;
    std::array<std::uint8_t, kReportSize> report_{};

    std::mutex mutex_; // guards all members below
    std::condition_variable changed_;
    runtime::NewestByte byte_;
    std::string failure_;
    bool sending_ = false;
    Time begun_{};      // of the report under way
    bool lit_ = false;  // an output may be on
    bool gone_ = false; // unplugged
    bool finishing_ = false, finished_ = false;
};

} // namespace hid_ports
