#pragma once

#include "platform/printer_port.h"
#include "platform/simulated/clock.h"
#include "platform/usb_board.h"
#include "runtime/newest_byte.h"

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
    void endPattern() override { ++patterns_; }
    bool taken(int mask) override { return (busy_ & mask) == 0; }
    std::string notReady() override { return starting_; }

    int data() const { return data_; }
    int patterns() const { return patterns_; }
    /// From now on the outputs in `mask` do not take what is written, as those of a slow device.
    void holdBack(int mask) { busy_ = mask; }
    /// From now on the device is not ready, for this reason; empty: it is ready.
    void setStarting(std::string why) { starting_ = std::move(why); }
    /// The accesses since the last call, oldest first; only the last kRemembered of them.
    std::vector<Access> takeAccesses();
    /// From now on the device refuses every call with this text; empty: it works again.
    void breakDown(std::string reason) { broken_ = std::move(reason); }

  private:
    void write(int bit, int state);

    int data_ = 0;
    int patterns_ = 0;
    int busy_ = 0;
    std::string starting_;
    std::vector<Access> ring_ = std::vector<Access>(kRemembered);
    std::size_t written_ = 0; // since the last call of takeAccesses
    std::string broken_;
};

/// A K8055 board without hardware. It takes every byte at once, unless it was made slow.
class UsbBoard : public platform::UsbBoard {
  public:
    /// `address` is what OpenDevice answers; -1 is a board that is not there.
    explicit UsbBoard(int address) : address_(address) {}

    int openDevice(int address) override;
    std::string refusal() const override { return address_ < 0 ? refusal_ : std::string(); }
    void writeAllDigital(int outputs) override;
    bool taken(int mask) override;
    void closeDevice() override;

    /// What is on the board.
    int outputs();
    int writes() const { return writes_; }
    /// Reports that a slow board has begun.
    int reports() const { return reports_; }
    void answerWith(int address) { address_ = address; }
    /// The board is there, but does not let itself be opened, for this reason.
    void refuseWith(std::string reason) {
        address_ = -1;
        refusal_ = std::move(reason);
    }
    /// From now on each report takes so many milliseconds of this clock, which outlives the board.
    void makeSlow(const Clock& clock, int milliseconds) {
        clock_ = &clock;
        reportTime_ = std::chrono::milliseconds(milliseconds);
    }
    void breakDown(std::string reason) { broken_ = std::move(reason); }

  private:
    void check() const;
    /// Begins and ends the reports that fall due up to now.
    void catchUp();

    int address_;
    std::string refusal_;
    int outputs_ = 0;
    int writes_ = 0;
    std::string broken_;

    const Clock* clock_ = nullptr; // set: the board is slow
    runtime::NewestByte::Time reportTime_{}, wantedAt_{}, reportEnd_{};
    runtime::NewestByte byte_;
    int sent_ = -1; // the byte of the report under way
    int reports_ = 0;
};

} // namespace simulated
