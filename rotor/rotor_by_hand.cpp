#include "engine/position.h"
#include "rotor/rotor.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

/// What the user, or a program elsewhere, has the antenna do without a target.
namespace rotor {

namespace {
constexpr double kSame = 0.01; // degrees of arc
} // namespace

void Rotor::cmdPark_Click() {
    form_.chkRotOnOff.Value = 0;
    park();
}

void Rotor::park() {
    clientTurns_ = false;
    startTurning({settings_.park, true});
}

void Rotor::cmdPoint_Click() {
    if (following()) {
        form_.notice.tell("The antenna follows: untick " + form_.chkRotOnOff.Caption.get() +
                          " before you point it");
        return;
    }
    try {
        const Direction wanted{runtime::parseNumber(form_.txtPointAz.Text.get()),
                               runtime::parseNumber(form_.txtPointEl.Text.get())};
        Path path;
        path.take(wanted, position(), machine());
        const Direction place = path.aim(settings_.ranges);
        if (arc(place, wanted) > kSame) {
            form_.notice.tell("This direction is outside the range of the rotator");
            return;
        }
        startTurning({place, false});
    } catch (const runtime::RunTimeError&) {
        form_.notice.tell("Type azimuth and elevation in degrees, such as 180 and 12.5");
    }
}

void Rotor::skyPressed(const Direction& wanted) {
    // While it follows, what the user has typed stays.
    if (!following()) {
        form_.txtPointAz.Text = runtime::formatShown(static_cast<float>(wanted.azimuth));
        form_.txtPointEl.Text = runtime::formatShown(static_cast<float>(wanted.elevation));
    }
    cmdPoint_Click();
}

void Rotor::cmdCalibrate_Click() {
    if (sides_.anyRunning()) {
        form_.notice.tell("The antenna turns: calibrate when it stands");
        return;
    }
    if (!sources_.target()) {
        form_.notice.tell("There is no target to calibrate at");
        return;
    }
    Path path;
    path.take(*sources_.target(), position(), machine());
    const Direction place = path.aim(settings_.ranges);
    if (arc(place, *sources_.target()) > kSame) {
        form_.notice.tell("The target is outside the range of the machine: nothing is calibrated");
        return;
    }
    calibrated_ = {place.azimuth - position().azimuth, place.elevation - position().elevation};
    form_.cmdUndoCalibrate.Enabled = true;
    setPosition(place);
}

void Rotor::cmdUndoCalibrate_Click() {
    if (sides_.anyRunning()) {
        form_.notice.tell("The antenna turns: undo when it stands");
        return;
    }
    form_.cmdUndoCalibrate.Enabled = false;
    setPosition({position().azimuth - calibrated_.azimuth, position().elevation - calibrated_.elevation});
}

void Rotor::setPosition(const Direction& position) {
    sides_.a.sngPosRotor = runtime::toSingle(position.azimuth);
    sides_.b.sngPosRotor = runtime::toSingle(position.elevation);
    engine::showPosition(form_, sides_.a);
    engine::showPosition(form_, sides_.b);
    follower_.reset();
    if (sources_.target()) targetCame();
}

void Rotor::turn(Axis axis, int direction, bool fast) {
    const engine::Side& side = axis == Axis::kAzimuth ? sides_.a : sides_.b;
    const bool up = direction == form::kForward;
    goal_.reset();
    clientTurns_ = true;
    motion_.run(side, side.ascends(form::kForward) == up ? form::kForward : form::kBackward);
    if (fast) {
        motion_.fast(side);
    } else {
        motion_.slow(side);
    }
}

void Rotor::halt() {
    clientTurns_ = false;
    goal_.reset();
    follower_.reset();
    motion_.stopBoth();
}

} // namespace rotor
