#pragma once

#include "platform/usb_board.h"
#include "platform/windows/outside/library.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace windows_ports {

/// A K8055 board through the user's own 64-bit k8055d.dll beside the program. Its calls wait for the board,
/// so a thread makes them, always with the newest byte.
class BoardLibrary : public platform::UsbBoard {
  public:
    static constexpr const char* kLibrary = "k8055d.dll";

    struct Observer {
        /// Called before the first byte. If it throws runtime::ObjectError, the board is not used.
        std::function<void(int card)> opened;
        std::function<void()> closed;
    };

    /// `card` is the address of the chosen card, 0 to 3.
    BoardLibrary(int card, Observer observer);
    BoardLibrary(const BoardLibrary&) = delete;
    BoardLibrary& operator=(const BoardLibrary&) = delete;
    ~BoardLibrary() override;

    int openDevice(int address) override;
    std::string refusal() const override { return refusal_; }
    void writeAllDigital(int outputs) override;
    bool taken(int mask) override;
    void closeDevice() override;

  private:
    struct Sender;
    bool close();

    const int card_;
    const Observer observer_;
    std::string refusal_;
    std::shared_ptr<Sender> sender_; // of the open board
};

} // namespace windows_ports
