#include "rotor/rotor.h"

#include "rotor/machine.h"
#include "runtime/number.h"

#include <algorithm>
#include <utility>

namespace rotor {

namespace {

constexpr Sources::Time kRefresh{form::RotorPanel::kRefreshMilliseconds};

AxisThresholds thresholdsOf(const form::ScrollBar& restart, const form::ScrollBar& fast) {
    constexpr double kPerDegree = 10; // the restart is set in tenths
    return {restart.Value.get() / kPerDegree, static_cast<double>(fast.Value.get()), 0};
}

/// The nearest place of the machine.
Direction within(const Ranges& ranges, const Direction& place) {
    return {std::clamp(place.azimuth, ranges.azimuthMin, ranges.azimuthMax),
            std::clamp(place.elevation, ranges.elevationMin, ranges.elevationMax)};
}

} // namespace

Rotor::Rotor(form::Form1& form, engine::Motion& motion, engine::OutputPorts& outputs, Sources& sources)
    : form_(form), motion_(motion), outputs_(outputs), sources_(sources), sides_(form) {
    form_.tmrDispRefr.Tick.attach([this] { tmrDispRefr_Timer(); });
    form_.chkRotOnOff.Click.attach([this] { chkRotOnOff_Click(); });
    form_.cmdPark.Click.attach([this] { cmdPark_Click(); });
    form_.cmdPoint.Click.attach([this] { cmdPoint_Click(); });
    form_.cmdCalibrate.Click.attach([this] { cmdCalibrate_Click(); });
    form_.cmdUndoCalibrate.Click.attach([this] { cmdUndoCalibrate_Click(); });
    for (form::TextBox* box : {&form_.txtPointAz, &form_.txtPointEl}) {
        box->KeyDown.attach([this](int key) {
            if (key == form::TextBox::kEnter) cmdPoint_Click();
        });
    }
    form_.onSkyPressed = [this](const Direction& wanted) { skyPressed(wanted); };
    sources_.onTarget = [this] { targetCame(); };
}

void Rotor::use(const RotorSettings& settings) {
    if (settings.holdElevation != settings_.holdElevation) coilsRest_ = false;
    settings_ = settings;
    sources_.setSilence(std::chrono::seconds(settings.silence));
    // Another range may offer another way.
    follower_.reset();
    if (goal_) goal_->place = within(settings_.ranges, goal_->place);
    if (isOn() && sources_.target()) targetCame();
    showPlan();
}

void Rotor::enter() {
    standing_ = {};
    moved_ = coilsRest_ = false;
    steps_ = form_.lngContaStep.value();
    form_.tmrDispRefr.Enabled = true;
    show();
}

void Rotor::leave() {
    form_.tmrDispRefr.Enabled = false;
    goal_.reset();
    clientTurns_ = parked_ = false;
    follower_.reset();
    sources_.forget();
}

bool Rotor::isBlocked(const engine::Side& side, bool up) const {
    const bool azimuth = side.motor == sides_.a.motor;
    const Ranges& ranges = settings_.ranges;
    const double highest = azimuth ? ranges.azimuthMax : ranges.elevationMax;
    // The engine's own end is the step that reaches it.
    if (up && highest >= side.rotorEnd) return side.sngPosRotor >= highest;
    // Positions are singles: a step that ends so little beyond an end ends on it.
    constexpr double kSame = 1e-4; // degrees
    const double step = stepOf(side) - kSame;
    return up ? side.sngPosRotor + step > highest
              : side.sngPosRotor - step < (azimuth ? ranges.azimuthMin : ranges.elevationMin);
}

Direction Rotor::position() const {
    return {sides_.a.sngPosRotor, sides_.b.sngPosRotor};
}

Follower::Axes Rotor::axes() const {
    return {axisOf(sides_.a), axisOf(sides_.b)};
}

Machine Rotor::machine() const {
    return {settings_.ranges, speedOf(sides_.a), speedOf(sides_.b)};
}

Follower::Settings Rotor::followerSettings() const {
    Follower::Settings settings{machine(), settings_.followFrom, thresholdsOf(form_.HScroll6, form_.HScroll2),
                                thresholdsOf(form_.HScroll5, form_.HScroll4)};
    settings.elevation.reverse = thresholdsOf(form_.HScroll3, form_.HScroll4).restart;
    return settings;
}

void Rotor::tmrDispRefr_Timer() {
    sources_.pass(kRefresh);
    // After silence the next target is a first one.
    if (!sources_.target() && follower_.path().any()) follower_.reset();
    form_.chkRotOnOff.Enabled =
        following() || sources_.holder() || sources_.anyThere() || form_.chkOpenCom.ticked();
    letGoOfUsersMotion(); // also when its button is up again
    stopReleasedJogs();
    if (goal_) {
        goOnToGoal();
    } else {
        subSat(kRefresh);
        parkAfterPass();
    }
    restCoils(kRefresh);
    show();
}

void Rotor::stopReleasedJogs() {
    if (following()) return;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        if (motion_.takeReleased(*side)) motion_.release(*side);
    }
}

/// An engine that the user runs is not taken back to the goal.
void Rotor::letGoOfUsersMotion() {
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        if (side->running() && (!side->bolTargetRotor || motion_.movesByIncrement(*side))) goal_.reset();
    }
}

void Rotor::targetCame() {
    if (!isOn() || !following()) return;
    clientTurns_ = false;
    follower_.take(*sources_.target(), axes(), followerSettings());
    if (!follower_.below()) goal_.reset();
    if (sources_.target()->elevation >= Path::kPassBegins) passRose_ = true;
    lastElevation_ = sources_.target()->elevation;
    if (!goal_) subSat({});
}

void Rotor::subSat(Sources::Time time) {
    if (!following() || clientTurns_) return;
    // Without a target, or with one too low, both orders are to stop.
    const Follower::Orders orders = follower_.look(time, axes(), followerSettings());
    carryOut(sides_.a, orders.azimuth);
    carryOut(sides_.b, orders.elevation);
    if (follower_.turnedRound())
        form_.notice.tell("The target has passed the end of the range: the antenna turns round");
}

bool Rotor::carryOut(const engine::Side& side, const Order& order) {
    if (order.direction == 0) {
        if (side.running()) motion_.release(side);
        return false;
    }
    bool& refuses = refuses_.at(static_cast<std::size_t>(side.motor - 1));
    if (refuses && !motion_.whyNotStart(side).empty()) return false;
    refuses = !motion_.moveTo(side, runtime::toSingle(order.target));
    if (refuses) return false;
    standing_ = {};
    coilsRest_ = false;
    // An axis with a single speed runs at it. Motion would say at each look that the other one is missing.
    if (side.intTickAlta > 0 && (order.fast || side.intTickBassa <= 0)) {
        motion_.fast(side);
    } else {
        motion_.slow(side);
    }
    return true;
}

void Rotor::goOnToGoal() {
    // The machine goes all the way, whatever the restart is.
    Follower::Settings settings = followerSettings();
    settings.azimuth.restart = settings.elevation.restart = settings.elevation.reverse = 0;
    const Order azimuth = orderFor(axisOf(sides_.a), goal_->place.azimuth, settings.azimuth);
    const Order elevation = orderFor(axisOf(sides_.b), goal_->place.elevation, settings.elevation);
    const bool azimuthGoes = carryOut(sides_.a, azimuth);
    const bool elevationGoes = carryOut(sides_.b, elevation);
    if (azimuthGoes || elevationGoes || sides_.anyRunning()) return;
    parked_ = goal_->parking && azimuth.direction == 0 && elevation.direction == 0;
    goal_.reset();
}

void Rotor::startTurning(const Goal& goal) {
    if (!isOn()) return;
    goal_ = {within(settings_.ranges, goal.place), goal.parking};
    parked_ = false;
    refuses_ = {};
    goOnToGoal();
}

void Rotor::parkAfterPass() {
    const bool over = follower_.over() || (sources_.lost() && lastElevation_ < Path::kPassBegins);
    if (!passRose_ || !over || !following()) return;
    passRose_ = false;
    if (settings_.parkAfterPass) startTurning({settings_.park, true});
}

void Rotor::restCoils(Sources::Time time) {
    // Steps tell of a motion that began and ended since the last look.
    const int steps = form_.lngContaStep.value();
    const bool stepped = std::exchange(steps_, steps) != steps;
    if (sides_.anyRunning() || stepped) {
        standing_ = {};
        moved_ = true;
        coilsRest_ = false;
        if (sides_.anyRunning()) parked_ = false;
        return;
    }
    standing_ += time;
    const auto delay = std::chrono::seconds(form_.intAutoCmdOffSec.value());
    const bool due = moved_ && form_.bolAutoCmdOff && delay.count() > 0 && standing_ >= delay;
    if (coilsRest_ || !(due || parked_)) return;
    coilsRest_ = true; // also when it fails: that is told once
    if (settings_.holdElevation) {
        outputs_.rest(sides_.a);
    } else {
        form_.cmdOff.Click.raise();
    }
}

void Rotor::chkRotOnOff_Click() {
    goal_.reset();
    clientTurns_ = passRose_ = false;
    refuses_ = {};
    follower_.reset();
    if (!isOn()) return;
    if (following() && sources_.target()) {
        targetCame();
    } else if (!following()) {
        for (const engine::Side* side : {&sides_.a, &sides_.b}) {
            if (side->running()) motion_.release(*side);
        }
    }
}

void Rotor::stopFollowing() {
    if (!isOn()) return;
    motion_.stopBoth();
    goal_.reset();
    form_.chkRotOnOff.Value = 0;
    // A command that was being carried out is over; what a program goes on sending is not.
    if (sources_.holder() && sources_.holder()->hold() == Hold::kUntilDone) sources_.forget();
}

} // namespace rotor
