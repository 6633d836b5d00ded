#include "app/engine_set_up.h"

#include "engine/parameters.h"
#include "engine/position.h"
#include "engine/stepper.h"
#include "engine/trial.h"
#include "runtime/errors.h"
#include "runtime/number.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace app {

namespace {

// Proposals, for a motor of the usual kind that may be heavily loaded.
constexpr int kSteps = 200, kSlow = 50, kFast = 100;
constexpr float kUnits = 1;

constexpr int kMostSteps = 32767, kMostSpeed = 1000;
constexpr int kTrialMilliseconds = 600; // at each period
constexpr int kHalfStepsOfFull = 2;

int wholeOf(form::TextBox& box, const std::string& what, int most) {
    const std::string wrong = what + ": type a whole number from 1 to " + std::to_string(most);
    try {
        const double number = runtime::parseNumber(box.Text.get());
        if (number >= 1 && number <= most && number == std::floor(number)) return static_cast<int>(number);
    } catch (const runtime::RunTimeError&) {
    }
    box.setFocus();
    throw runtime::ObjectError(wrong);
}

float numberOf(form::TextBox& box, const std::string& what) {
    try {
        const float number = runtime::parseSingle(box.Text.get());
        if (number != 0 && std::fabs(number) < 2 * engine::kEndOfRun) return number;
    } catch (const runtime::RunTimeError&) {
    }
    box.setFocus();
    throw runtime::ObjectError(what + ": type a number that is not 0");
}

std::string textOr(int value, int proposal) {
    return std::to_string(value > 0 ? value : proposal);
}

} // namespace

EngineSetUp::EngineSetUp(form::Form1& main, form::AssistantEngine& shown, const engine::Side& side,
                         engine::Motion& motion, form::Timer& trial)
    : main_(main), shown_(shown), side_(side), motion_(motion), trial_(trial) {
    shown_.cmdOnce.Click.attach([this] { cmdOnce_Click(); });
    shown_.cmdMove.Click.attach([this] { cmdMove_Click(); });
    shown_.cmdCorrect.Click.attach([this] { cmdCorrect_Click(); });
    shown_.cmdTryForward.MouseDown.attach([this] { beginTrial(form::kForward); });
    shown_.cmdTryBackward.MouseDown.attach([this] { beginTrial(form::kBackward); });
    shown_.cmdTryForward.MouseUp.attach([this] { endTrial(); });
    shown_.cmdTryBackward.MouseUp.attach([this] { endTrial(); });
}

EngineSetUp::Values EngineSetUp::now() const {
    return {side_.intSteps.value(), side_.intVelBassa.value(), side_.intVelAlta.value(), side_.sngMMGiro,
            side_.chkHalfStep.ticked()};
}

void EngineSetUp::open() {
    found_ = now();
    positionFound_ = position();
    halfStepsFound_ = side_.halfSteps;
    moved_.reset();
    shown_.txtStepsR.Text = textOr(found_.steps, kSteps);
    shown_.txtUnitsR.Text = runtime::shortestText(found_.units != 0 ? found_.units : kUnits);
    shown_.chkHalf.Value.load(found_.half ? 1 : 0);
    shown_.txtSlow.Text = textOr(found_.slow, kSlow);
    shown_.txtFast.Text = textOr(found_.fast, kFast);
    shown_.lblUnitsR.Caption = side_.units.label.Caption;
    shown_.txtAsked.Text = shown_.txtUnitsR.Text;
    shown_.txtMeasured.Text = "";
    shown_.lblCorrected.Caption = "";
    shown_.lblTry.Caption = "";
    shown_.barTry.Value = 0;
}

float& EngineSetUp::position() const {
    return main_.intFunzione == form::kSatelliteRotor ? side_.sngPosRotor : side_.sngPos;
}

void EngineSetUp::restore() {
    put(found_);
    const double halfStep = found_.steps == 0 ? 0 : double{found_.units} / (kHalfStepsOfFull * found_.steps);
    const float counted =
        runtime::toSingle(positionFound_ + static_cast<double>(side_.halfSteps - halfStepsFound_) * halfStep);
    // Positions are sums of rounded steps: only a step made in other units matters.
    if (std::fabs(counted - position()) <= std::fabs(halfStep)) return;
    position() = counted;
    engine::showPosition(main_, side_);
}

void EngineSetUp::put(const Values& values) const {
    side_.intSteps = values.steps;
    side_.sngMMGiro = values.units;
    side_.intVelBassa = values.slow;
    side_.intVelAlta = values.fast;
    side_.intTickBassa = engine::stepPeriod(side_.intVelBassa);
    side_.intTickAlta = engine::stepPeriod(side_.intVelAlta);
    side_.chkHalfStep.Value.load(values.half ? 1 : 0);
    engine::Stepper::applyStepMode(side_);
}

EngineSetUp::Values EngineSetUp::typed() const {
    const auto what = [this](const engine::Parameter& parameter) {
        return name() + ", " + parameter.label.Caption.get();
    };
    return {wholeOf(shown_.txtStepsR, what(side_.steps), kMostSteps),
            wholeOf(shown_.txtSlow, what(side_.slow), kMostSpeed),
            wholeOf(shown_.txtFast, what(side_.fast), kMostSpeed),
            numberOf(shown_.txtUnitsR, what(side_.units)), shown_.chkHalf.ticked()};
}

bool EngineSetUp::use() {
    const std::string wrong = fault();
    tell(wrong);
    if (wrong.empty()) put(typed());
    return wrong.empty();
}

bool EngineSetUp::enter(const engine::Parameter& parameter, const std::string& text) {
    if (parameter.box.Text == text) return true;
    const std::string before = parameter.box.Text;
    if (!parameter.box.Enabled) parameter.label.DblClick.raise();
    parameter.box.Text = text;
    parameter.label.DblClick.raise();
    if (!parameter.box.Enabled) return true;
    parameter.box.Text = before;
    parameter.box.Enabled = false;
    return false;
}

int EngineSetUp::shareOfTurn() const {
    constexpr int kAll = 100;
    const std::int64_t turn = std::int64_t{kHalfStepsOfFull} * side_.intSteps.value();
    return turn <= 0 ? 0 : static_cast<int>((side_.halfSteps % turn + turn) % turn * kAll / turn);
}

std::string EngineSetUp::fault() const {
    try {
        typed();
        return {};
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
}

std::string EngineSetUp::storeMotor() {
    const Values values = typed();
    put(found_);
    const bool taken = enter(side_.steps, std::to_string(values.steps)) &&
                       enter(side_.units, runtime::shortestText(values.units));
    if (!taken) return side_.entryNotice.Caption;
    side_.chkHalfStep.Value = values.half ? 1 : 0;
    return {};
}

std::string EngineSetUp::storeSpeeds() {
    const Values values = typed();
    put(found_);
    const bool taken =
        enter(side_.slow, std::to_string(values.slow)) && enter(side_.fast, std::to_string(values.fast));
    return taken ? std::string() : side_.entryNotice.Caption.get();
}

void EngineSetUp::cmdOnce_Click() {
    if (!use()) return;
    move(form::kForward, std::fabs(side_.sngMMGiro));
}

void EngineSetUp::move(int direction, double distance) {
    moved_ = side_.sngMMGiro;
    onMove();
    if (motion_.moveBy(side_, direction, distance)) motion_.slow(side_);
}

void EngineSetUp::cmdMove_Click() {
    if (!use()) return;
    try {
        const float asked = numberOf(shown_.txtAsked, name() + ", asked for");
        const bool forward = side_.ascends(form::kForward) == (asked > 0);
        move(forward ? form::kForward : form::kBackward, std::fabs(asked));
    } catch (const runtime::ObjectError& error) {
        tell(error.what());
    }
}

void EngineSetUp::cmdCorrect_Click() {
    if (!use()) return;
    try {
        const float asked = numberOf(shown_.txtAsked, name() + ", asked for");
        const float measured = numberOf(shown_.txtMeasured, name() + ", measured");
        const float before = moved_.value_or(side_.sngMMGiro);
        const float units = engine::correctedUnits(before, asked, measured, side_.takesFractions);
        shown_.txtUnitsR.Text = runtime::shortestText(units);
        shown_.lblCorrected.Caption = runtime::shortestText(before) + " becomes " +
                                      shown_.txtUnitsR.Text.get() +
                                      (side_.takesFractions ? "" : ", a whole number here");
        // A measurement corrects once.
        shown_.txtMeasured.Text = "";
        moved_.reset();
        use();
    } catch (const runtime::ObjectError& error) {
        tell(error.what());
    }
}

void EngineSetUp::beginTrial(int direction) {
    if (!use()) return;
    period_ = engine::kTrialSlowest + 1;
    onMove();
    if (!motion_.run(side_, direction)) {
        period_ = 0;
        return;
    }
    trial_.Interval = kTrialMilliseconds;
    trial_.Tick.attach([this] { trial_Timer(); });
    trial_.Enabled = true;
    trial_Timer();
}

void EngineSetUp::trial_Timer() {
    if (!side_.running()) {
        trial_.Enabled = false;
        period_ = 0;
        shown_.lblTry.Caption = "End of run: try the other way";
        return;
    }
    if (period_ > 1) --period_;
    constexpr int kAll = 100;
    shown_.barTry.Value = kAll * (engine::kTrialSlowest - period_) / (engine::kTrialSlowest - 1);
    side_.intTickAlta = period_;
    motion_.fast(side_);
    shown_.lblTry.Caption =
        std::to_string(period_) + " ms a step, " + std::to_string(engine::speedOf(period_)) + " steps/s";
}

void EngineSetUp::endTrial() {
    trial_.Enabled = false;
    motion_.stop(side_);
    const int period = std::exchange(period_, 0);
    if (period == 0) return;
    const int fast = engine::safeSpeed(period);
    shown_.txtFast.Text = std::to_string(fast);
    constexpr int kSlowShare = 3;
    const int slow = runtime::parseInt16(shown_.txtSlow.Text.get()).value();
    if (slow * 2 > fast) shown_.txtSlow.Text = std::to_string(std::max(1, fast / kSlowShare));
    shown_.lblTry.Caption = "Up to " + std::to_string(period) + " ms a step: fast " + std::to_string(fast);
    use();
}

} // namespace app
