#include "platform/simulated/outputs.h"

#include "runtime/errors.h"

#include <algorithm>

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
    ++writes_;
    if (!clock_) {
        outputs_ = outputs;
        return;
    }
    catchUp();
    byte_.want(outputs);
    wantedAt_ = clock_->now();
    catchUp();
}

bool UsbBoard::taken(int mask) {
    check();
    catchUp();
    return byte_.taken(mask);
}

int UsbBoard::outputs() {
    catchUp();
    return outputs_;
}

void UsbBoard::catchUp() {
    if (!clock_) return;
    const runtime::NewestByte::Time now = clock_->now();
    for (;;) {
        if (sent_ >= 0) {
            if (reportEnd_ > now) return;
            outputs_ = std::exchange(sent_, -1);
            byte_.done(reportEnd_);
        }
        const auto next = byte_.next();
        if (!next) return;
        const auto start = std::max(*next, wantedAt_);
        if (start > now) return;
        sent_ = byte_.begin();
        reportEnd_ = start + reportTime_;
        ++reports_;
    }
}

void UsbBoard::closeDevice() {
    check();
    if (outputs() != 0) writeAllDigital(0);
}

} // namespace simulated
