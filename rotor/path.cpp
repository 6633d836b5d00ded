#include "rotor/path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace rotor {

namespace {

constexpr double kTurn = 360;
constexpr double kOnItsBack = 180; // a flipped antenna has azimuth + 180 and elevation 180 - elevation
constexpr double kLeap = 90;       // degrees of azimuth between two targets
constexpr double kEqual = 0.05;    // degrees; smaller differences do not matter
// Near the zenith the way changes only for a clear gain; otherwise the choice could change again and again.
constexpr double kClearGain = 0.7;
constexpr double kClearSeconds = 1;

double outside(double value, double min, double max) {
    return std::max({0.0, min - value, value - max});
}

} // namespace

void Path::reset() {
    *this = Path();
}

void Path::endPass() {
    risen_ = false;
    over_ = true;
}

Direction Path::position(const Way& way) const {
    return {target_->azimuth + way.turn, way.flipped ? kOnItsBack - target_->elevation : target_->elevation};
}

Direction Path::aim(const Ranges& ranges) const {
    const Direction place = position(way_);
    return {std::clamp(place.azimuth, ranges.azimuthMin, ranges.azimuthMax),
            std::clamp(place.elevation, ranges.elevationMin, ranges.elevationMax)};
}

double Path::beyondEnd(const Ranges& ranges) const {
    return outside(position(way_).azimuth, ranges.azimuthMin, ranges.azimuthMax);
}

bool Path::waiting(const Ranges& ranges) const {
    return target_ && beyondEnd(ranges) > 0;
}

Path::Worth Path::worth(const Way& way, const Direction& antenna, const Machine& machine) const {
    const Ranges& ranges = machine.ranges;
    const Direction place = position(way);
    // Below the horizon the elevation waits at its limit; this counts as reached.
    const double horizon =
        way.flipped ? std::min(place.elevation, kOnItsBack) : std::max(place.elevation, 0.0);
    const double room = drift_.value_or(0) > 0   ? ranges.azimuthMax - place.azimuth
                        : drift_.value_or(0) < 0 ? place.azimuth - ranges.azimuthMin
                                                 : kPass;
    // A flipped antenna must be able to come down on the other side.
    const bool comesDown = !way.flipped || ranges.elevationMax >= kOnItsBack;
    const double azimuth = std::clamp(place.azimuth, ranges.azimuthMin, ranges.azimuthMax);
    const double elevation = std::clamp(place.elevation, ranges.elevationMin, ranges.elevationMax);
    return {.outside = outside(place.azimuth, ranges.azimuthMin, ranges.azimuthMax) +
                       outside(horizon, ranges.elevationMin, ranges.elevationMax),
            .holds = comesDown ? std::clamp(room, 0.0, kPass) : 0,
            .seconds = std::max(std::fabs(azimuth - antenna.azimuth) / machine.azimuthSpeed,
                                std::fabs(elevation - antenna.elevation) / machine.elevationSpeed)};
}

void Path::choose(const Direction& antenna, const Machine& machine) {
    const auto better = [](const Worth& a, const Worth& b) {
        if (std::fabs(a.outside - b.outside) > kEqual) return a.outside < b.outside;
        if (std::fabs(a.holds - b.holds) > kEqual) return a.holds > b.holds;
        return a.seconds < b.seconds;
    };
    const double north = kTurn * std::floor(target_->azimuth / kTurn);
    Way best = way_;
    Worth bestWorth = worth(best, antenna, machine);
    // A flipped position needs an elevation range that reaches it.
    const bool over = kOnItsBack - std::max(target_->elevation, 0.0) <= machine.ranges.elevationMax;
    for (const bool flipped : {false, true}) {
        if (flipped && !over) continue;
        for (const int turns : {-2, -1, 0, 1, 2}) {
            const Way way{kTurn * turns - north + (flipped ? kOnItsBack : 0), flipped};
            const Worth its = worth(way, antenna, machine);
            if (!better(its, bestWorth)) continue;
            best = way;
            bestWorth = its;
        }
    }
    if (best == way_) return;
    way_ = best;
    beyond_ = {};
}

void Path::chooseClearly(const Direction& antenna, const Machine& machine) {
    const Path before = *this;
    choose(antenna, machine);
    const Worth had = before.worth(before.way_, antenna, machine), has = worth(way_, antenna, machine);
    const bool nearer = has.outside < had.outside - kBeyondEnd;
    const bool longer = has.outside <= had.outside && has.holds > had.holds + kHoldsMore;
    if (!nearer && !longer) *this = before;
}

void Path::crossZenith(const Direction& antenna, const Machine& machine) {
    const Worth now = worth(way_, antenna, machine);
    Way best = way_;
    double soonest = std::min(now.seconds * kClearGain, now.seconds - kClearSeconds);
    for (const double halfTurn : {-kTurn / 2, kTurn / 2}) {
        const Way way{way_.turn + halfTurn, !way_.flipped};
        const Worth its = worth(way, antenna, machine);
        // The rest of the pass must be as safe as before.
        if (its.outside > 0 || its.holds < now.holds - kEqual || its.seconds >= soonest) continue;
        best = way;
        soonest = its.seconds;
    }
    if (best == way_) return;
    way_ = best;
    beyond_ = {};
}

double Path::continued(double azimuth, const Ranges& ranges) const {
    const double change = std::remainder(azimuth - target_->azimuth, kTurn);
    // Over the zenith both ways round are nearly equally long: take the way inside the range.
    const double around = change > 0 ? change - kTurn : change + kTurn;
    const auto leaves = [&](double by) {
        return outside(position(way_).azimuth + by, ranges.azimuthMin, ranges.azimuthMax) > 0;
    };
    const bool leap = std::fabs(change) > kLeap && target_->elevation >= kNearZenith;
    return target_->azimuth + (leap && leaves(change) && !leaves(around) ? around : change);
}

void Path::seeHeight(double elevation, bool first) {
    if (first) {
        rises_ = true;
        turned_ = elevation;
    }
    const double further = rises_ ? elevation - turned_ : turned_ - elevation;
    if (further < -kRises) rises_ = !rises_;
    if (further > 0 || further < -kRises) turned_ = elevation;
}

void Path::seeDrift(bool first) {
    if (first) {
        driftFrom_ = *target_;
        drift_.reset();
    }
    if (arc(driftFrom_, *target_) < kDriftKnown) return;
    // What is no drift yet adds up: the beginning stays.
    const double moved = target_->azimuth - driftFrom_.azimuth;
    if (std::fabs(moved) >= kDrifts) {
        drift_ = moved > 0 ? 1 : -1;
        driftFrom_ = *target_;
    } else if (!drift_) {
        drift_ = 0;
    }
}

void Path::take(const Direction& target, const Direction& antenna, const Machine& machine) {
    const bool first = !target_;
    const bool other = !first && arc(*target_, target) > kOtherTarget;
    Direction next = target;
    // Counts on through north: the azimuth nearest to the previous azimuth.
    if (!first) next.azimuth = continued(target.azimuth, machine.ranges);
    target_ = next;
    const bool wasKnown = drift_.has_value() && !other;
    seeHeight(next.elevation, first || other);
    seeDrift(first || other);
    if (first || other) {
        risen_ = over_ = false;
        beyond_ = {};
        choose(antenna, machine);
    }
    if (drift_ && !wasKnown) {
        choose(antenna, machine);
    } else if (next.elevation < kPassBegins && !risen_ && rises_ && drift_) {
        if (std::exchange(over_, false)) {
            choose(antenna, machine);
        } else {
            chooseClearly(antenna, machine);
        }
    }
    if (next.elevation >= kPassBegins) risen_ = true;
    if (next.elevation >= kNearZenith) crossZenith(antenna, machine);
}

bool Path::pass(Time time, const Direction& antenna, const Machine& machine) {
    if (!target_ || beyondEnd(machine.ranges) < kBeyondEnd) {
        beyond_ = {};
        return false;
    }
    beyond_ += time;
    if (beyond_ < kBeyondTime) return false;
    const Path before = *this;
    choose(antenna, machine);
    if (way_ == before.way_) return false;
    // If the other end is hardly nearer to the target, turning round gains nothing.
    const double gain =
        before.worth(before.way_, antenna, machine).outside - worth(way_, antenna, machine).outside;
    if (gain >= kBeyondEnd) return true;
    *this = before;
    return false;
}

} // namespace rotor
