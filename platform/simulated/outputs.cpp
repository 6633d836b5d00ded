#include "platform/simulated/outputs.h"

#include "runtime/errors.h"

#include <algorithm>

namespace simulated {

void PrinterPort::write(int bit, int state) {
    if (!broken_.empty()) throw runtime::ObjectError(broken_);
    data_ = state == 1 ? data_ | (1 << bit) : data_ & ~(1 << bit);
    if (ring_.size() < kRemembered) {
        ring_.push_back({bit + 1, state});
        return;
    }
    ring_[next_] = {bit + 1, state};
    next_ = (next_ + 1) % kRemembered;
}

std::vector<PrinterPort::Access> PrinterPort::takeAccesses() {
    std::rotate(ring_.begin(), ring_.begin() + static_cast<std::ptrdiff_t>(next_), ring_.end());
    next_ = 0;
    return std::exchange(ring_, {});
}

void UsbBoard::check() const {
    if (!broken_.empty()) throw runtime::ObjectError(broken_);
}

int UsbBoard::openDevice(int /*address*/) {
    check();
    return address_;
}

void UsbBoard::writeAllDigital(int outputs) {
    check();
    outputs_ = outputs;
    ++writes_;
}

void UsbBoard::closeDevice() {
    check();
}

} // namespace simulated
