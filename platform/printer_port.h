#pragma once

#include <string>

namespace platform {

/// The data register of a PC printer port, or a device that replaces it: eight outputs, changed one at a
/// time. A register outputs each change at once; a slower device collects changes and outputs whole patterns.
/// All calls throw runtime::ObjectError if the device refuses.
class PrinterPort {
  public:
    virtual ~PrinterPort() = default;
    /// `bit` is the data bit, 0 to 7.
    virtual void clearBit(int bit) = 0;
    virtual void setBit(int bit) = 0;
    /// Marks the changes since the last call as a complete pattern, which may be output now. Never waits.
    virtual void endPattern() = 0;
    /// Whether the device has output the last pattern for the outputs in `mask`; always true for a register.
    virtual bool taken(int mask) = 0;
    /// The reason, for the user, why no engine may start yet, while a device starts; else empty.
    virtual std::string notReady() { return {}; }
};

} // namespace platform
