#pragma once

#include "platform/printer_port.h"
#include "platform/usb_board.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace simulated {

/// A printer port without hardware: it latches the data byte and remembers the last accesses.
class PrinterPort : public platform::PrinterPort {
  public:
    struct Access {
        int output; // 1 to 8
        int state;  // 0 or 1
        bool operator==(const Access&) const = default;
    };
    static constexpr std::size_t kRemembered = 4096;

    void clearBit(int bit) override { write(bit, 0); }
    void setBit(int bit) override { write(bit, 1); }

    int data() const { return data_; }
    /// The accesses since the last call, oldest first; only the last kRemembered of them.
    std::vector<Access> takeAccesses();
    /// From now on the device refuses every call with this text; empty: it works again.
    void breakDown(std::string reason) { broken_ = std::move(reason); }

  private:
    void write(int bit, int state);

    int data_ = 0;
    std::vector<Access> ring_ = std::vector<Access>(kRemembered);
    std::size_t written_ = 0; // since the last call of takeAccesses
    std::string broken_;
};

/// A K8055 board without hardware.
class UsbBoard : public platform::UsbBoard {
  public:
    /// `address` is what OpenDevice answers; -1 is a board that is not there.
    explicit UsbBoard(int address) : address_(address) {}

    int openDevice(int address) override;
    void writeAllDigital(int outputs) override;
    void closeDevice() override;

    int outputs() const { return outputs_; }
    int writes() const { return writes_; }
    void answerWith(int address) { address_ = address; }
    void breakDown(std::string reason) { broken_ = std::move(reason); }

  private:
    void check() const;

    int address_;
    int outputs_ = 0;
    int writes_ = 0;
    std::string broken_;
};

} // namespace simulated
