#pragma once

#include "platform/serial_port.h"
#include "platform/windows/outside/handle.h"

#include <memory>
#include <string>
#include <vector>

namespace windows_ports {

/// A COM port, exclusively for this process and for those that it shares the handle with.
class SerialPort : public platform::SerialPort {
  public:
    /// `device` is "COM3". Throws runtime::ObjectError, naming the device and the remedy.
    SerialPort(const std::string& device, int baud);
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    ~SerialPort() override;

    std::size_t write(std::span<const std::uint8_t> bytes) override;
    std::size_t read(std::span<std::uint8_t> buffer, std::chrono::nanoseconds longest) override;
    void wake() override { SetEvent(wake_.get()); }

    /// To share with another process.
    HANDLE handle() const { return port_.get(); }

  private:
    /// What is under way, or was last.
    struct Write {
        Handle done{CreateEventW(nullptr, TRUE, TRUE, nullptr)};
        OVERLAPPED state{};
        std::vector<std::uint8_t> bytes;
        bool settled(DWORD patience) const {
            return WaitForSingleObject(done.get(), patience) == WAIT_OBJECT_0;
        }
    };

    Handle port_;
    Handle read_, wake_; // events
    std::unique_ptr<Write> write_ = std::make_unique<Write>();
};

/// The names of the COM ports of this computer, "COM3", with what the system calls them.
struct SerialDevice {
    std::string port;
    std::string name;
};
std::vector<SerialDevice> serialDevices();

} // namespace windows_ports
