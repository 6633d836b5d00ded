#pragma once

namespace platform {

/// The data register of a PC printer port. The adapter latches the data byte and changes one bit of it.
class PrinterPort {
  public:
    virtual ~PrinterPort() = default;
    /// `bit` is the data bit, 0 to 7. Both throw runtime::ObjectError when the device refuses.
    virtual void clearBit(int bit) = 0;
    virtual void setBit(int bit) = 0;
};

} // namespace platform
