#include "runtime/newest_byte.h"

namespace runtime {

namespace {

constexpr int kHalfA = 15, kHalfB = 240;

/// The mask of the halves that contain a set bit.
int halves(int bits) {
    return ((bits & kHalfA) != 0 ? kHalfA : 0) | ((bits & kHalfB) != 0 ? kHalfB : 0);
}

} // namespace

void NewestByte::want(int byte) {
    byte &= kAll;
    waiting_ |= known_ ? byte ^ wanted_ : kAll;
    known_ = true;
    wanted_ = byte;
    due_ = true;
}

std::optional<NewestByte::Time> NewestByte::next() const {
    if (!due_ || sending_) return std::nullopt;
    const bool otherHalfMayFollow = (halves(arrived_) & ~halves(waiting_)) != 0;
    return otherHalfMayFollow ? arrivedAt_ + kGathering : arrivedAt_;
}

int NewestByte::begin() {
    due_ = false;
    sending_ = true;
    underWay_ = waiting_;
    waiting_ = 0;
    return wanted_;
}

void NewestByte::done(Time now) {
    sending_ = false;
    arrived_ = underWay_;
    underWay_ = 0;
    arrivedAt_ = now;
}

} // namespace runtime
