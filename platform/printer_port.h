#pragma once

namespace platform {

/// The data register of a PC printer port, or what stands for it: eight outputs, of which one at a time is
/// changed. A register puts each change out at once; a slower device collects them and puts out patterns.
/// All calls throw runtime::ObjectError when the device refuses.
class PrinterPort {
  public:
    virtual ~PrinterPort() = default;
    /// `bit` is the data bit, 0 to 7.
    virtual void clearBit(int bit) = 0;
    virtual void setBit(int bit) = 0;
    /// The changes since the last call make up a pattern, which may be put out now. Never waits.
    virtual void endPattern() = 0;
    /// Whether the outputs in `mask` are as the last pattern has them: always, for a register.
    virtual bool taken(int mask) = 0;
};

} // namespace platform
