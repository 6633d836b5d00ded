#pragma once

#include "platform/firmata/board.h"
#include "platform/printer_port.h"
#include "platform/serial_port.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace firmata {

/// Eight pins of a board with StandardFirmata on a serial line. A pattern goes to the line at once where the
/// line has room; a thread sends what must wait, and listens to the board.
class Port : public platform::PrinterPort {
  public:
    /// `name` is the device's, for messages. All outputs are off. The board is ready within 10 s, or fails.
    Port(std::unique_ptr<platform::SerialPort> serial, std::string name, const Wiring& wiring);
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    /// Switches the outputs off; waits for this 0.2 s at most.
    ~Port() override;

    void clearBit(int bit) override { levels_ &= ~(1 << bit); }
    void setBit(int bit) override { levels_ |= 1 << bit; }
    void endPattern() override;
    bool taken(int mask) override;
    std::string notReady() override;

  private:
    void run();
    /// Sends what is due; notes a failure.
    void send();
    /// Whether the thread has nothing left to do.
    bool done() const;
    /// Throws when the board has failed.
    void check() const;

    const std::string name_;
    const Bytes offMessage_;
    const int off_;
    int levels_;

    std::mutex mutex_; // guards all members below
    /// Only the thread reads. It stays open after a failure too, because the watchdog shares it.
    const std::unique_ptr<platform::SerialPort> serial_;
    Board board_;
    Bytes rest_;               // of bytes that the driver has taken in part
    Board::Time waitsUntil_{}; // the thread
    std::string failure_;
    std::optional<Board::Time> endsBy_; // once the object is being destroyed
    std::thread thread_;
};

} // namespace firmata
