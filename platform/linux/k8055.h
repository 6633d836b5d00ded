#pragma once

#include "platform/usb_board.h"

#include <functional>
#include <memory>
#include <string>

namespace linux_ports {

class Sender;

/// Velleman K8055 boards on USB, through hidapi and the kernel's hidraw devices. Reports are sent by a thread
/// of their own, always the newest byte; no call waits for the board but closeDevice. A board that fails is
/// sent "off" for some seconds more. One at a time is open in a process.
class K8055 : public platform::UsbBoard {
  public:
    static constexpr int kCards = 4; // addresses 0 to 3, by two jumpers

    /// Told on the caller's thread; each may be empty.
    struct Observer {
        /// The board's device: "/dev/hidraw0". What this throws is the refusal, and no board is opened.
        std::function<void(const std::string& path)> opened;
        /// The board is let go with its outputs off, or is gone. Not told of a board that fails, until the
        /// next openDevice finds that its outputs are off after all.
        std::function<void()> closed;
    };

    /// `card` is the address of the card that the user chose, 0 to 3.
    explicit K8055(int card, Observer observer = {});
    K8055(const K8055&) = delete;
    K8055& operator=(const K8055&) = delete;
    /// As closeDevice, without a word when it fails.
    ~K8055() override;

    /// Address 0 is the card that the user chose; others are meant as they are.
    int openDevice(int address) override;
    std::string refusal() const override { return refusal_; }
    void writeAllDigital(int outputs) override;
    bool taken(int mask) override;
    void closeDevice() override;

  private:
    bool openPath(const std::string& path);
    /// False when the outputs were not off in time.
    bool close();

    int card_;
    Observer observer_;
    std::string refusal_;
    std::shared_ptr<Sender> sender_; // the open board
};

} // namespace linux_ports
