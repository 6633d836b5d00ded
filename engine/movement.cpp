#include "engine/movement.h"

#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace engine {

namespace {

constexpr const char* kUp = "▸";
constexpr const char* kDown = "◂";

/// With four digits that count.
std::string shortText(double value) {
    if (value <= 0) return "0";
    const double scale = std::pow(10, 3 - std::floor(std::log10(value)));
    return runtime::shortestText(std::round(value * scale) / scale);
}

/// "a, b and c", of two and more.
std::string listed(const std::vector<std::string>& names) {
    std::string text = names.front();
    for (std::size_t i = 1; i < names.size(); ++i)
        text += (i + 1 < names.size() ? ", " : " and ") + names[i];
    return text;
}

} // namespace

std::string timeText(double seconds) {
    constexpr double kMinute = 60;
    constexpr double kRounding = 1e-3;
    const double whole = std::ceil(seconds - kRounding);
    if (whole < 2 * kMinute) return std::to_string(std::lround(whole)) + " s";
    return std::to_string(std::lround(std::ceil(seconds / kMinute))) + " min";
}

StepText stepText(const Side& side) {
    const bool slow = side.intTickBassa > 0;
    const bool fast = side.intTickAlta > 0;
    std::vector<std::string> zeros;
    if (side.intSteps == 0) zeros.push_back(side.steps.label.Caption);
    if (side.sngMMGiro == 0) zeros.push_back(side.units.label.Caption);
    if (!slow && !fast) zeros.insert(zeros.end(), {side.slow.label.Caption, side.fast.label.Caption});
    if (zeros.size() == 1) return {zeros.front() + " is 0: it cannot run", false};
    if (!zeros.empty()) return {listed(zeros) + " are 0", false};
    std::string speeds = std::to_string(speedOf((slow ? side.intTickBassa : side.intTickAlta).value()));
    if (slow && fast && side.intTickBassa != side.intTickAlta)
        speeds += " to " + std::to_string(speedOf(side.intTickAlta.value()));
    return {shortText(stepDistance(side)) + " " + side.unit() + " a step, " + speeds + " steps/s", true};
}

Movement::Movement(form::Form1& form, Motion& motion, const Approach& approach)
    : form_(form), approach_(approach), sides_(form) {
    motion.onEndOfRange = [this](const Side& side) {
        engines_.at(static_cast<std::size_t>(side.motor - 1)).end = place(side);
    };
}

void Movement::show() {
    form_.lblRuns.Caption = rampText(form_);
    for (const Side* side : {&sides_.a, &sides_.b}) {
        show(*side);
        const StepText step = stepText(*side);
        side->lblStep.Caption = step.text;
        side->lblStep.ForeColor = step.ok ? form::kWindowText : form::kAmber;
    }
}

Movement::Place Movement::place(const Side& side) const {
    const bool rotor = form_.intFunzione == form::kSatelliteRotor;
    return {form_.intFunzione.value(), rotor ? side.sngPosRotor : side.sngPos};
}

void Movement::show(const Side& side) {
    Engine& engine = engines_.at(static_cast<std::size_t>(side.motor - 1));
    const bool runs = side.running();
    if (runs || engine.end != place(side)) engine.end.reset();
    const bool follows = form_.intFunzione == form::kSatelliteRotor && form_.chkRotOnOff.ticked();
    std::optional<Approach::Way> way;
    if (runs && !follows) way = approach_.way(side);
    side.bar.Visible = way.has_value();
    std::string target, toGo = engine.end ? "end of range" : "";
    if (runs) target = side.ascends(side.forward.Enabled ? form::kForward : form::kBackward) ? kUp : kDown;
    if (way) {
        if (engine.target != way->target) engine.whole = way->distance;
        target += " " + runtime::formatShown(way->target);
        toGo = timeText(std::chrono::duration<double>(way->time).count());
        constexpr double kAll = 100;
        const double left = engine.whole > 0 ? std::min(1.0, way->distance / engine.whole) : 0;
        side.bar.Value = static_cast<int>(std::lround(kAll * (1 - left)));
    }
    engine.target = way ? std::optional(way->target) : std::nullopt;
    side.lblTarget.Caption = target;
    side.lblToGo.Caption = toGo;
}

} // namespace engine
