#include "app/kept_positions.h"

#include "config/records.h"
#include "engine/side.h"
#include "runtime/errors.h"
#include "runtime/text.h"

namespace app {

namespace record = config::record;
using config::Standing;

namespace {

config::Phases phasesOf(form::Int16 full, form::Int16 half, form::Int16 lastFull, form::Int16 lastHalf) {
    return {full.value(), half.value(), lastFull.value(), lastHalf.value()};
}

void setPhases(const engine::Side& side, const config::Phases& phases) {
    side.intFase = phases.intFase;
    side.intFaseHalf = phases.intFaseHalf;
    side.intUltFase = phases.intUltFase;
    side.intUltFaseHalf = phases.intUltFaseHalf;
}

std::string line(const char* name, float found, float stored) {
    return std::string("\n") + name + ": " + runtime::formatShown(found) +
           " (stored: " + runtime::formatShown(stored) + ")";
}

} // namespace

KeptPositions::KeptPositions(form::Form1& form, form::Boxes& boxes, config::RecordFile& records,
                             Functions& functions, platform::PositionFile& file)
    : form_(form), boxes_(boxes), records_(records), functions_(functions), file_(file) {}

Standing KeptPositions::standing() const {
    return {.function = form_.intFunzione.value(),
            .a = phasesOf(form_.intFaseA, form_.intFaseHalfA, form_.intUltFaseA, form_.intUltFaseHalfA),
            .b = phasesOf(form_.intFaseB, form_.intFaseHalfB, form_.intUltFaseB, form_.intUltFaseHalfB),
            .posA = form_.sngPosA,
            .posB = form_.sngPosB,
            .azimuth = form_.sngPosAz,
            .elevation = form_.sngPosEl};
}

void KeptPositions::start() {
    if (begun_ || ended_) return;
    bool tuner = false;
    try {
        tuner = records_.read().boolean(record::kLoadPositions);
    } catch (const runtime::FileError&) {
        return; // already reported; the kept positions stay until save.cfg can be read
    }
    try {
        if (const auto bytes = file_.leftOver()) {
            if (const auto found = config::newestSlot(*bytes)) offer(*found, tuner);
        }
    } catch (const runtime::FileError& error) {
        boxes_.critical(std::string(error.what()) +
                            ". It held the positions of a session that did not end in order. Check where "
                            "the engines stand.",
                        "Positions");
    }
    if (ended_) return; // the program ended while a box was open: ask again at the next start
    begun_ = true;
    std::array<std::byte, config::kPositionFileSize> bytes{};
    last_ = standing();
    config::storeSlot(bytes, ++number_, last_);
    try {
        memory_ = file_.create(bytes);
    } catch (const runtime::FileError& error) {
        file_.remove(); // what an older session left has been answered
        boxes_.critical(std::string(error.what()) + ". A crash would lose the positions of this session.",
                        "Positions");
    }
}

void KeptPositions::offer(const Standing& found, bool tuner) {
    const Standing stored = standing();
    const bool tunerDiffers = tuner && (found.posA != stored.posA || found.posB != stored.posB);
    if (!tunerDiffers && found.azimuth == stored.azimuth && found.elevation == stored.elevation) return;
    std::string text = "The last session did not end in order. Its positions were:\n";
    if (found.function != stored.function) {
        text += "\nFunction: " + Functions::nameOf(found.function) +
                " (stored: " + Functions::nameOf(stored.function) + ")";
    }
    if (tuner) {
        const bool dots = found.function == form::kTuneAndLoad;
        text += line(dots ? "Tune" : "Engine 1", found.posA, stored.posA);
        text += line(dots ? "Load" : "Engine 2", found.posB, stored.posB);
    }
    text += line("Azimuth", found.azimuth, stored.azimuth);
    text += line("Elevation", found.elevation, stored.elevation);
    text += "\n\nOK uses these positions. Cancel keeps the stored ones.";
    if (boxes_.confirm(text, "Positions")) take(found, tuner);
}

void KeptPositions::take(const Standing& found, bool tuner) {
    // Switch the function on first: this sets the tuner positions to 0.
    if (form_.intFunzione != found.function) functions_.switchOn(found.function);
    if (tuner) {
        form_.sngPosA = found.posA;
        form_.sngPosB = found.posB;
        // The memory in use at the last exit belongs to other positions.
        form_.lblUsoA.Caption = "";
        form_.lblUsoB.Caption = "";
    }
    form_.sngPosAz = found.azimuth;
    form_.sngPosEl = found.elevation;
    form_.Label2.Caption = runtime::formatShown(form_.sngPosA);
    form_.Label8.Caption = runtime::formatShown(form_.sngPosB);
    form_.lblAzimut.Caption = runtime::formatShown(form_.sngPosAz);
    form_.lblElev.Caption = runtime::formatShown(form_.sngPosEl);
    // The motors' rotors stand where these phases have held them.
    const engine::Sides sides(form_);
    setPhases(sides.a, found.a);
    setPhases(sides.b, found.b);
}

void KeptPositions::keep() {
    if (memory_.empty()) return;
    const Standing now = standing();
    if (now == last_) return;
    last_ = now;
    config::storeSlot(memory_.first<config::kPositionFileSize>(), ++number_, now);
    file_.changed();
}

void KeptPositions::end() {
    ended_ = true;
    memory_ = {};
    if (begun_) file_.remove();
}

} // namespace app
