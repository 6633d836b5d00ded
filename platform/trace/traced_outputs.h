#pragma once

#include "platform/printer_port.h"
#include "platform/trace/trace_file.h"
#include "platform/usb_board.h"

namespace trace {

/// Passes every access on and records the accesses that succeed: "T port BIT STATE", BIT 1 to 8 is the
/// output.
class TracedPrinterPort : public platform::PrinterPort {
  public:
    TracedPrinterPort(platform::PrinterPort& port, TraceFile& file) : port_(port), file_(file) {}
    void clearBit(int bit) override;
    void setBit(int bit) override;
    void endPattern() override { port_.endPattern(); }
    bool taken(int mask) override { return port_.taken(mask); }
    std::string notReady() override { return port_.notReady(); }

  private:
    void record(int bit, char state);

    platform::PrinterPort& port_;
    TraceFile& file_;
};

/// The same for a USB board: "T usb open RESULT", "T usb BYTE" (decimal), "T usb close". The time of a byte
/// is the time of its write, some milliseconds before the board has the byte.
class TracedUsbBoard : public platform::UsbBoard {
  public:
    TracedUsbBoard(platform::UsbBoard& board, TraceFile& file) : board_(board), file_(file) {}
    int openDevice(int address) override;
    std::string refusal() const override { return board_.refusal(); }
    void writeAllDigital(int outputs) override;
    bool taken(int mask) override { return board_.taken(mask); }
    void closeDevice() override;

  private:
    platform::UsbBoard& board_;
    TraceFile& file_;
};

/// Every access to both, recorded in a file.
struct TracedOutputs {
    /// Throws runtime::FileError if the file cannot be opened, or is one that the program keeps in `folder`
    /// under a name that begins with one of `own`.
    TracedOutputs(const std::filesystem::path& path, const std::filesystem::path& folder,
                  std::span<const std::string_view> own, TraceFile::Clock::time_point start,
                  TraceFile::Failure failure, platform::PrinterPort& tracedPort,
                  platform::UsbBoard& tracedBoard);

    TraceFile file;
    TracedPrinterPort printer;
    TracedUsbBoard board;
};

} // namespace trace
