#include "rotor/sources.h"

#include "rotor/tracking_data.h"
#include "runtime/errors.h"
#include "runtime/number.h"

#include <algorithm>
#include <cmath>

namespace rotor {

namespace {

/// Whether it can be a direction: offsets, turns and the way over the top leave room beyond the sky's own.
bool isDirection(const Direction& target) {
    constexpr double kMostAzimuth = 720, kMostElevation = 180; // degrees, either way
    return std::fabs(target.azimuth) <= kMostAzimuth && std::fabs(target.elevation) <= kMostElevation;
}

} // namespace

bool Sources::anyThere() const {
    return std::ranges::any_of(all_, [](const TrackingSource* source) { return source->there(); });
}

bool Sources::silent() const {
    if (holder_->hold() == Hold::kUntilDone) return false;
    if (holder_->hold() == Hold::kWhileThere) return !holder_->there();
    return sinceHeard_ >= silence_;
}

bool Sources::isFreeFor(const TrackingSource& source) const {
    return !holder_ || holder_ == &source || silent();
}

void Sources::complete(const TrackingSource& source) {
    if (!isFreeFor(source)) return;
    Direction target;
    try {
        target = {runtime::parseNumber(form_.lblAzRx.Caption.get()),
                  runtime::parseNumber(form_.lblElRx.Caption.get())};
    } catch (const runtime::RunTimeError&) {
        return;
    }
    if (!isDirection(target)) return;
    holder_ = &source;
    target_ = target;
    sinceHeard_ = {};
    lost_ = false;
    if (onTarget) onTarget();
}

bool Sources::offer(const TrackingSource& source, const std::string& azimuth, const std::string& elevation) {
    if (!isFreeFor(source)) return false;
    showReceived(form_, azimuth, elevation);
    form_.lblRealAz.Caption = azimuth;
    form_.lblRealEl.Caption = elevation;
    complete(source);
    return true;
}

void Sources::heard(const TrackingSource& source) {
    if (holder_ == &source) sinceHeard_ = {};
}

void Sources::drop(const TrackingSource& source) {
    if (holder_ == &source) forget();
}

void Sources::forget() {
    holder_ = nullptr;
    target_.reset();
    lost_ = false;
}

void Sources::pass(Time time) {
    sinceHeard_ += time;
    if (!holder_ || !silent()) return;
    forget();
    lost_ = true;
}

} // namespace rotor
