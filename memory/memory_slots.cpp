#include "memory/memory_slots.h"

#include "config/records.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <cmath>

namespace memory {

namespace {

constexpr std::size_t kLabelMax = 10;
constexpr std::size_t kLabelShown = 6;

} // namespace

bool standsBelowZero(form::Form1& form, form::Boxes& boxes, bool both) {
    bool below = false;
    const engine::Sides sides(form);
    for (const engine::Side* side : {&sides.a, &sides.b}) {
        const bool counts = both || side->mustNotRecallBelowZero;
        below = below || (counts && runtime::leadingNumber(side->lblPos.Caption.get()) < 0);
    }
    if (below) boxes.critical("Reset the system to zero", "End of run");
    return below;
}

MemorySlots::MemorySlots(form::Form1& form, form::Boxes& boxes, config::RecordFile& file,
                         platform::Sound& sound, engine::Motion& motion, engine::Approach& approach)
    : form_(form), boxes_(boxes), file_(file), sound_(sound), motion_(motion), approach_(approach),
      sides_(form) {
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        form_.lblMem[n].Caption = std::to_string(n);
        form_.lblMem[n].DblClick.attach([this, n] { lblMem_DblClick(n); });
        form_.Option[n].Click.attach([this, n] { Option_Click(n); });
        show(n, "");
    }
    form_.onRenameMemory = [this](int n) { rename(n); };
    form_.onClearMemory = [this](int n) { clear(n); };
}

bool MemorySlots::isStored(int n) {
    try {
        runtime::parseNumber(form_.strMemPosA(n));
        runtime::parseNumber(form_.strMemPosB(n));
        return true;
    } catch (const runtime::RunTimeError&) {
        return false;
    }
}

void MemorySlots::lblMem_DblClick(int n) {
    if (isRotor()) return;
    const auto old = [this, n](const engine::Side& side) {
        const std::string& text = form_.strMemPosA(n);
        return side.asksWithEndOfEngineA ? runtime::lastCharacters(text, 5)
                                         : runtime::firstCharacters(text, 5);
    };
    const std::string prompt = "Old Engine data: A=" + old(sides_.a) + " B=" + old(sides_.b) +
                               ". New Engine data: A=" + form_.Label2.Caption.get() +
                               " B=" + form_.Label8.Caption.get() + " ";
    const bool confirmed = boxes_.confirm(prompt, "Confirm new Data Memory #" + std::to_string(n) + " ?");
    form_.intMemConfirm = confirmed ? 1 : 2;
    if (!confirmed) return;

    // Cancel gives an empty label, and storing goes on.
    form_.strMemLabel = askLabel(form_.lblFr[n].Caption).value_or("");
    const Contents before = contents(n);
    put(n, {runtime::formatStored(form_.sngPosA), runtime::formatStored(form_.sngPosB), form_.strMemLabel});
    changed(n, before, "stored");
}

Contents MemorySlots::contents(int n) {
    return {form_.strMemPosA(n), form_.strMemPosB(n), label(n)};
}

void MemorySlots::put(int n, const Contents& contents) {
    // On disk first: what the window shows and recalls is what is stored.
    file_.write({config::textRecord(config::record::kMemoryPosA + n, contents.posA),
                 config::textRecord(config::record::kMemoryPosB + n, contents.posB),
                 config::textRecord(config::record::kMemoryLabel + n, contents.label)});
    form_.strMemPosA(n) = contents.posA;
    form_.strMemPosB(n) = contents.posB;
    show(n, contents.label);
    if (selected_ == n && !isStored(n)) select(0);
}

void MemorySlots::changed(int n, const Contents& before, const char* how) {
    if (onChange) onChange(n, before, "Memory " + std::to_string(n) + " " + how);
}

void MemorySlots::rename(int n) {
    const Contents before = contents(n);
    const auto label = askLabel(before.label);
    if (!label || *label == before.label) return;
    put(n, {before.posA, before.posB, *label});
    changed(n, before, "renamed");
}

void MemorySlots::clear(int n) {
    if (!isStored(n)) return;
    const Contents before = contents(n);
    put(n, {});
    changed(n, before, "cleared");
}

std::optional<std::string> MemorySlots::askLabel(const std::string& proposed) {
    const auto answer = boxes_.input("Insert a label for this memory", "Memory label (Max 10 characters)",
                                     proposed, kLabelMax);
    if (!answer) return std::nullopt;
    return runtime::firstCharacters(*answer, kLabelMax);
}

void MemorySlots::show(int n, const std::string& label) {
    form_.Option[n].Enabled = isStored(n);
    labels_.at(static_cast<std::size_t>(n - 1)) = label;
    form_.lblFr[n].Caption = runtime::firstCharacters(label, kLabelShown);
    showToolTip(n, label);
}

void MemorySlots::showToolTip(int n, const std::string& label) {
    form_.Option[n].ToolTip = label + " (" + form_.strMemPosA(n) + "-" + form_.strMemPosB(n) + ")";
}

void MemorySlots::Option_Click(int n) {
    // The click has selected n already: what was selected before is another one, or n again.
    int before = selected_ == n ? n : 0;
    for (int other = 1; other <= form::Form1::kMemories; ++other) {
        if (other != n && form_.Option[other].Value) before = other;
    }
    // What is not recalled is not selected either: fast store would overwrite it.
    const bool recalled = !isRotor() && isStored(n) && recall(n);
    select(recalled ? n : before);
}

bool MemorySlots::recallAndSelect(int n) {
    const bool started = recall(n);
    if (started) select(n);
    return started;
}

void MemorySlots::select(int n) {
    selected_ = n;
    for (int other = 1; other <= form::Form1::kMemories; ++other)
        form_.Option[other].Value.load(other == n);
}

void MemorySlots::subResetPressedMem() {
    select(0);
}

bool MemorySlots::recall(int n) {
    if (standsBelowZero(form_, boxes_, false)) return false;
    const Recalled place = recalled(n);
    // Both engines go, or none.
    if (!approach_.canMoveTo(sides_.a, place.a) || !approach_.canMoveTo(sides_.b, place.b)) return false;
    approach_.moveTo(sides_.a, place.a);
    approach_.moveTo(sides_.b, place.b);
    form_.lblUsoA.Caption = place.label;
    form_.lblUsoB.Caption = place.label;
    if (onRecall) onRecall(place);
    return true;
}

Recalled MemorySlots::recalled(int n) {
    return {n, form_.lblFr[n].Caption, runtime::parseSingle(form_.strMemPosA(n)),
            runtime::parseSingle(form_.strMemPosB(n))};
}

void MemorySlots::subAzzeraLabel() {
    motion_.stopBoth();
    if (form_.bolCaricaInAvvio) return;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        side->sngPos = 0;
        side->lblPos.Caption = "0";
        side->lblUso.Caption = ""; // nothing stands where a memory has led it
    }
}

void MemorySlots::fastStore(bool energised) {
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        if (!form_.Option[n].Value) continue;
        const std::string posA = runtime::formatStored(form_.sngPosA);
        const std::string posB = runtime::formatStored(form_.sngPosB);
        const bool differs = posA != form_.strMemPosA(n) || posB != form_.strMemPosB(n);
        // The countdown goes on while the outputs are off.
        if (!differs && !energised) return;
        const Contents before = contents(n);
        file_.write({config::textRecord(config::record::kMemoryPosA + n, posA),
                     config::textRecord(config::record::kMemoryPosB + n, posB)});
        form_.strMemPosA(n) = posA;
        form_.strMemPosB(n) = posB;
        showToolTip(n, form_.lblFr[n].Caption);
        subAlarmMemUp();
        if (differs) changed(n, before, "stored by fast store");
        return;
    }
}

void MemorySlots::subAlarmMemUp() {
    sound_.play("memup.wav");
}

} // namespace memory
