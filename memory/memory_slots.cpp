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
    const bool below = runtime::leadingNumber(form.Label2.Caption.get()) < 0 ||
                       (both && runtime::leadingNumber(form.Label8.Caption.get()) < 0);
    if (below) boxes.critical("Reset the system to zero", "End of run");
    return below;
}

MemorySlots::MemorySlots(form::Form1& form, form::Boxes& boxes, config::RecordFile& file,
                         platform::Sound& sound)
    : form_(form), boxes_(boxes), file_(file), sound_(sound), sides_(form) {
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        form_.lblMem[n].Caption = std::to_string(n);
        form_.lblMem[n].DblClick.attach([this, n] { lblMem_DblClick(n); });
        form_.Option[n].Click.attach([this, n] { Option_Click(n); });
        show(n, "");
    }
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
    // The old B value shown is the end of the stored A text.
    const std::string prompt = "Old Engine data: A=" + runtime::firstCharacters(form_.strMemPosA(n), 5) +
                               " B=" + runtime::lastCharacters(form_.strMemPosA(n), 5) +
                               ". New Engine data: A=" + form_.Label2.Caption.get() +
                               " B=" + form_.Label8.Caption.get() + " ";
    const bool confirmed = boxes_.confirm(prompt, "Confirm new Data Memory #" + std::to_string(n) + " ?");
    form_.intMemConfirm = confirmed ? 1 : 2;
    if (!confirmed) return;

    // Cancel gives an empty label, and storing goes on.
    const auto answer = boxes_.input("Insert a label for this memory", "Memory label (Max 10 characters)",
                                     form_.lblFr[n].Caption);
    form_.strMemLabel = runtime::firstCharacters(answer.value_or(""), kLabelMax);
    const std::string posA = runtime::formatStored(form_.sngPosA);
    const std::string posB = runtime::formatStored(form_.sngPosB);
    // On disk first: what the window shows and recalls is what is stored.
    file_.write({config::textRecord(config::record::kMemoryPosA + n, posA),
                 config::textRecord(config::record::kMemoryPosB + n, posB),
                 config::textRecord(config::record::kMemoryLabel + n, form_.strMemLabel)});
    form_.strMemPosA(n) = posA;
    form_.strMemPosB(n) = posB;
    show(n, form_.strMemLabel);
}

void MemorySlots::show(int n, const std::string& label) {
    form_.Option[n].Enabled = isStored(n);
    form_.lblFr[n].Caption = runtime::firstCharacters(label, kLabelShown);
    showToolTip(n, label);
}

void MemorySlots::showToolTip(int n, const std::string& label) {
    form_.Option[n].ToolTip = label + " (" + form_.strMemPosA(n) + "-" + form_.strMemPosB(n) + ")";
}

void MemorySlots::Option_Click(int n) {
    int before = 0;
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
    for (int other = 1; other <= form::Form1::kMemories; ++other)
        form_.Option[other].Value.load(other == n);
}

void MemorySlots::subResetPressedMem() {
    select(0);
}

bool MemorySlots::recall(int n) {
    // Only engine A is tested: a negative position of B does not stand in the way.
    if (standsBelowZero(form_, boxes_, false)) return false;
    form_.sngTargetA = runtime::parseSingle(form_.strMemPosA(n));
    form_.bolMemA = true;
    subStartDaMemA();
    form_.sngTargetB = runtime::parseSingle(form_.strMemPosB(n));
    form_.bolMemB = true;
    subStartDaMemB();
    form_.lblUsoA.Caption = form_.lblFr[n].Caption;
    form_.lblUsoB.Caption = form_.lblFr[n].Caption;
    return true;
}

void MemorySlots::startFromMemory(const engine::Side& side) {
    const float rounded = runtime::parseSingle(runtime::formatStored(side.sngPos));
    // The direction is set first, so that the run command sees no reversal and keeps the phase indexes.
    if (rounded < side.sngTarget) {
        side.intDir = form::kForward;
        side.cmdRunForward.Click.raise();
    } else if (rounded > side.sngTarget) {
        side.intDir = form::kBackward;
        side.cmdRunBackward.Click.raise();
    } else if (!side.running()) {
        side.bolMem = false;
    }
    const bool near =
        std::fabs(side.sngPos - side.sngTarget) < static_cast<float>(form_.intMemSlowDist.value());
    (near ? side.cmdSlow : side.cmdFast).Click.raise();
}

void MemorySlots::subAzzeraLabel() {
    form_.cmdAlt.Click.raise();
    form_.cmdAltB.Click.raise();
    if (form_.bolCaricaInAvvio) return;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        side->sngPos = 0;
        side->lblPos.Caption = "0";
    }
}

void MemorySlots::fastStore() {
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        if (!form_.Option[n].Value) continue;
        const std::string posA = runtime::formatStored(form_.sngPosA);
        const std::string posB = runtime::formatStored(form_.sngPosB);
        if (posA == form_.strMemPosA(n) && posB == form_.strMemPosB(n)) return;
        file_.write({config::textRecord(config::record::kMemoryPosA + n, posA),
                     config::textRecord(config::record::kMemoryPosB + n, posB)});
        form_.strMemPosA(n) = posA;
        form_.strMemPosB(n) = posB;
        showToolTip(n, form_.lblFr[n].Caption);
        subAlarmMemUp();
        return;
    }
}

void MemorySlots::subAlarmMemUp() {
    sound_.play("memup.wav");
}

} // namespace memory
