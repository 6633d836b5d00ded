#include "platform/simulated/outputs.h"

#include "runtime/errors.h"

namespace simulated {

void PrinterPort::write(int bit, int state) {
    if (!broken_.empty()) throw runtime::ObjectError(broken_);
    data_ = state == 1 ? data_ | (1 << bit) : data_ & ~(1 << bit);
    ring_[written_++ % kRemembered] = {bit + 1, state};
}

std::vector<PrinterPort::Access> PrinterPort::takeAccesses() {
    std::vector<Access> accesses;
    for (std::size_t i = written_ > kRemembered ? written_ - kRemembered : 0; i < written_; ++i) {
        accesses.push_back(ring_[i % kRemembered]);
    }
    written_ = 0;
    return accesses;
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
