#include "engine/ramp_drive.h"
#include "rotor/machine.h"
#include "rotor/rotor.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>

/// Shows the antenna's state in the window.
namespace rotor {

std::optional<Direction> Rotor::destination() const {
    if (goal_) return goal_->place;
    if (!following() || !follower_.path().any() || follower_.below()) return std::nullopt;
    return follower_.path().aim(settings_.ranges);
}

void Rotor::show() {
    form_.lblSource.Caption = sources_.lost()     ? std::string("Target lost")
                              : sources_.holder() ? "Target: " + sources_.holder()->name()
                                                  : std::string();
    form_.lblRotorState.Caption = stateText();
    showPlan();
}

void Rotor::showPlan() {
    form_.plan = {sources_.target(), destination(), settings_.ranges.azimuthMin, settings_.ranges.azimuthMax};
}

std::string Rotor::stateText() const {
    std::string text;
    if (goal_) {
        text = (goal_->parking ? "Parks: " : "Turns: ") + toGoText();
    } else if (clientTurns_) {
        text = "Turned by a program";
    } else if (!following()) {
        text = parked_ ? "Parked" : "";
    } else if (!follower_.path().any()) {
        text = parked_ ? "Parked" : "Waits for a target";
    } else if (follower_.below()) {
        text = "Waits: the target is too low";
    } else if (follower_.path().waiting(settings_.ranges)) {
        text = "Waits at the end of the range";
    } else if (sides_.anyRunning()) {
        text = "Follows: " + toGoText();
    } else {
        text = refuses_[0]   ? sides_.a.lblEngine.Caption.get() + " does not start"
               : refuses_[1] ? sides_.b.lblEngine.Caption.get() + " does not start"
                             : "On target";
    }
    constexpr double kVertical = 90;
    if (position().elevation > kVertical) text += text.empty() ? "Flipped" : ", flipped";
    if (coilsRest_ && settings_.holdElevation) text += "; elevation is held, its engine gets hot";
    return text;
}

std::string Rotor::toGoText() const {
    const auto place = destination();
    if (!place) return "";
    const auto left = [](double to, const engine::Side& side) { return std::fabs(to - side.sngPosRotor); };
    const auto seconds = [&](double degrees, const engine::Side& side) {
        const auto steps = static_cast<std::int64_t>(std::ceil(degrees / stepOf(side)));
        const std::chrono::duration<double> step(stepOf(side) / speedOf(side));
        return std::chrono::duration<double>(
                   engine::moveTime(engine::rampOf(form_, side), steps, 0,
                                    std::chrono::duration_cast<engine::Period>(step)))
            .count();
    };
    const double azimuth = left(place->azimuth, sides_.a);
    const double elevation = left(place->elevation, sides_.b);
    const double time = std::max(seconds(azimuth, sides_.a), seconds(elevation, sides_.b));
    const auto text = [](double degrees) { return runtime::formatShown(static_cast<float>(degrees)) + "°"; };
    return text(azimuth) + " and " + text(elevation) + " to go, " +
           std::to_string(std::lround(std::ceil(time))) + " s";
}

} // namespace rotor
