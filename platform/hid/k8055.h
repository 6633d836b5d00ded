#pragma once

#include "platform/usb_board.h"

#include <functional>
#include <memory>
#include <string>

namespace hid_ports {

class Sender;

/// Velleman K8055 boards on USB, through hidapi. A separate thread sends the
/// reports, always with the newest byte; only closeDevice waits for the board. A failed board still gets
/// "off" reports for some seconds. Only one board can be open in a process.
class K8055 : public platform::UsbBoard {
  public:
    static constexpr int kCards = 4; // addresses 0 to 3, by two jumpers

    /// Called on the caller's thread; each function may be empty.
    struct Observer {
        /// Called with the board's device, such as "/dev/hidraw0". If it throws, the board is not opened, and
        /// refusal() gives the text.
        std::function<void(const std::string& path)> opened;
        /// Called when the board has been closed with its outputs off, or is unplugged. For a failed board
        /// the call comes only when the next openDevice finds its outputs off.
        std::function<void()> closed;
    };

    /// `card` is the address of the chosen card, 0 to 3.
    explicit K8055(int card, Observer observer = {});
    K8055(const K8055&) = delete;
    K8055& operator=(const K8055&) = delete;
    /// Like closeDevice, but ignores errors.
    ~K8055() override;

    /// Address 0 stands for the chosen card; any other address is the card's own.
    int openDevice(int address) override;
    std::string refusal() const override { return refusal_; }
    void writeAllDigital(int outputs) override;
    bool taken(int mask) override;
    void closeDevice() override;

  private:
    bool openPath(const std::string& path);
    /// Returns false if the outputs were not off in time.
    bool close();

    int card_;
    Observer observer_;
    std::string refusal_;
    std::shared_ptr<Sender> sender_; // the open board
};

} // namespace hid_ports
