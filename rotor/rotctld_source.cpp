#include "rotor/rotctld_source.h"

#include "runtime/number.h"

#include <utility>

namespace rotor::rotctld {

namespace {

constexpr double kOffsetsPerDegree = 100;
constexpr double kZenith = 90;

std::string text(double degrees) {
    return runtime::shortestText(static_cast<float>(degrees));
}

} // namespace

Source::Source(form::Form1& form, Sources& sources, RotorCommands& commands, std::string version)
    : form_(form), sources_(sources), commands_(commands), version_(std::move(version)) {
    sources_.add(*this);
}

Direction Source::position() const {
    const Direction position = commands_.position();
    return {position.azimuth - form_.HScOffsetA.Value.get() / kOffsetsPerDegree,
            position.elevation - form_.HScOffsetB.Value.get() / kOffsetsPerDegree};
}

Result Source::point(const Direction& target) {
    // Beyond the zenith a client means the other side of the sky.
    const bool over = target.elevation > kZenith;
    const double azimuth = over ? target.azimuth + (target.azimuth < 180 ? 180 : -180) : target.azimuth;
    const double elevation = over ? 2 * kZenith - target.elevation : target.elevation;
    if (!sources_.offer(*this, text(azimuth), text(elevation))) return Result::kNotAvailable;
    moving_ = false;
    return Result::kOk;
}

bool Source::mayTurn() const {
    return commands_.following() && sources_.isFreeFor(*this);
}

void Source::forget() {
    sources_.drop(*this);
    moving_ = false;
}

Result Source::move(Axis axis, int direction, bool fast) {
    if (!mayTurn()) return Result::kNotAvailable;
    forget();
    commands_.turn(axis, direction, fast);
    moving_ = true;
    return Result::kOk;
}

Result Source::stop() {
    forget();
    commands_.halt();
    return Result::kOk;
}

Result Source::park() {
    if (!mayTurn()) return Result::kNotAvailable;
    forget();
    commands_.park();
    return Result::kOk;
}

void Source::endMove() {
    // With another's target the antenna is no longer this client's to stop.
    if (std::exchange(moving_, false) && mayTurn()) commands_.halt();
}

} // namespace rotor::rotctld
