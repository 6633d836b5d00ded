#include "memory/fit_line.h"

#include "engine/movement.h"
#include "memory/frequency_table.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>

namespace memory {

FitLine::FitLine(form::Form1& form, form::Boxes& boxes, MemorySlots& slots, TableRecall& table,
                 AutomaticRecall& recall, const engine::Approach& approach)
    : form_(form), boxes_(boxes), slots_(slots), table_(table), recall_(recall), approach_(approach),
      sides_(form) {
    slots_.onRecall = table_.onRecall = [this](const Recalled& recalled) {
        last_ = recalled;
        ended_.reset();
    };
    form_.cmdGoOn.Click.attach([this] { goOn(); });
}

void FitLine::show() {
    const FitText line = form_.intFunzione == form::kSatelliteRotor ? FitText() : fitText(state());
    form_.lblFit.Caption = line.text;
    form_.lblFit.ForeColor = line.fits ? form::kWindowText : form::kAmber;
    form_.cmdGoOn.Visible = line.goesOn;
}

Fit FitLine::state() {
    Fit fit;
    const form::FrequencySource* const source = recall_.chosenSource();
    readSource(fit, source);
    readMotion(fit);
    fit.table = form_.chkHRM.ticked();
    fit.automatic = form_.chkAutoMemOnOff.ticked();
    if (fit.source == Fit::Source::kHeard) fit.wanted = wanted(*source);
    if (fit.wanted) fit.hold = hold(*source, *fit.wanted);
    return fit;
}

void FitLine::readSource(Fit& fit, const form::FrequencySource* source) {
    if (!source) return;
    fit.program = source->name;
    fit.state = form_.lblAutoMemConn.Caption;
    if (!form_.sourceConnected()) {
        fit.source = Fit::Source::kOff;
        return;
    }
    const auto hertz = source->hertz();
    fit.source = hertz ? Fit::Source::kHeard : Fit::Source::kSilent;
    if (hertz) fit.megahertz = runtime::shortestText(form::megahertzOf(*hertz));
    if (source->isOld()) fit.age = engine::timeText(source->silence());
}

void FitLine::readMotion(Fit& fit) {
    double seconds = -1;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        const auto way = approach_.way(*side);
        if (!way) continue;
        fit.motion = Fit::Motion::kRecalls;
        // A move that is no recall.
        if (last_ && way->target != (side == &sides_.a ? last_->a : last_->b)) last_.reset();
        const double time = std::chrono::duration<double>(way->time).count();
        if (time <= seconds) continue;
        seconds = time;
        fit.way = runtime::formatShown(static_cast<float>(way->distance)) + " " + side->unit() + ", " +
                  engine::timeText(time);
    }
    if (fit.motion == Fit::Motion::kRests && sides_.anyRunning()) fit.motion = Fit::Motion::kByHand;
    if (!last_) return;
    const std::array<float, 2> here = {form_.sngPosA, form_.sngPosB};
    if (fit.motion == Fit::Motion::kRecalls) {
        ended_.reset();
    } else if (!sides_.anyRunning() && !ended_) {
        ended_ = here;
    }
    fit.last = placeOf(*last_);
    const bool byHand = std::ranges::any_of(std::array{&sides_.a, &sides_.b}, [](const engine::Side* side) {
        return side->lblUso.Caption == "Manual";
    });
    fit.stopped = ended_ == here && !byHand && !fit.last->reached;
}

std::optional<Place> FitLine::wanted(const form::FrequencySource& source) {
    if (form_.chkHRM.ticked()) {
        const double megahertz = form::megahertzOf(*source.hertz());
        const auto positions = positionsAt(form_.hiResMem, megahertz, form_.tuner.curve);
        if (!positions) return std::nullopt;
        return placeOf({0, runtime::shortestText(megahertz), static_cast<float>(positions->a),
                        static_cast<float>(positions->b)});
    }
    std::optional<Place> first;
    for (const int n : recall_.fitting(source)) {
        const Place place = placeOf(slots_.recalled(n));
        if (!first || place.reached) first = place;
        if (place.reached) break;
    }
    return first;
}

Place FitLine::placeOf(const Recalled& recalled) const {
    const std::string memory = "Memory " + std::to_string(recalled.memory);
    const std::string& label = recalled.label;
    const bool reached = standsAt(recalled.a, recalled.b);
    if (recalled.memory == 0) return {"Table, " + label, label, reached};
    if (label.empty()) return {memory, memory, reached};
    return {memory + ", " + label, label, reached};
}

bool FitLine::standsAt(float a, float b) const {
    const auto stands = [this](const engine::Side& side, float target) {
        constexpr double kShown = 0.01; // a stored position has two decimals
        const int steps = form_.chkHRM.ticked() ? std::max(1, form_.tuner.leastMove) : 1;
        const double step = engine::stepDistance(side) * steps;
        constexpr double kRounding = 1e-3;
        return std::fabs(double{side.sngPos} - target) < std::max(step, kShown) + kRounding;
    };
    return stands(sides_.a, a) && stands(sides_.b, b);
}

Fit::Hold FitLine::hold(const form::FrequencySource& source, const Place& wanted) const {
    // Auto does not recall again what is in use already.
    const bool inUse = form_.lblUsoA.Caption == wanted.label && form_.lblUsoB.Caption == wanted.label;
    if (inUse) return Fit::Hold::kNone;
    if (form_.lblAutoMemOnOff.Caption == AutomaticRecall::kSemiAuto) return Fit::Hold::kByHand;
    if (form_.tuner.waitWhileTransmitting && source.transmitting()) return Fit::Hold::kTransmitting;
    if (boxes_.isOpen()) return Fit::Hold::kBox;
    return form_.bolFreqChanged ? Fit::Hold::kChanging : Fit::Hold::kNext;
}

void FitLine::goOn() {
    if (!last_) return;
    if (last_->memory > 0) {
        slots_.recallAndSelect(last_->memory);
    } else {
        table_.forget();
        table_.subHiResMem();
    }
}

} // namespace memory
