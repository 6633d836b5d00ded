#include "memory/automatic_recall.h"

#include "config/records.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <array>
#include <cmath>
#include <utility>

namespace memory {

namespace {

constexpr std::size_t kKeyLength = 2;
constexpr double kKilohertzPerMegahertz = 1000;

constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kBands = {{
    {"29", "10"},
    {"28", "10"},
    {"27", "11"},
    {"24", "12"},
    {"21", "15"},
    {"18", "17"},
    {"14", "20"},
    {"10", "30"},
    {"7.", "40"},
    {"5.", "60"},
    {"3.", "80"},
    {"1.", "16"}, // the 160 m band
}};

std::string keyOf(std::string_view text) {
    return runtime::formatCharacters(runtime::firstCharacters(text, kKeyLength), "@@");
}

} // namespace

std::string bandName(const std::string& key) {
    for (const auto& [bandKey, name] : kBands) {
        if (key == bandKey) return std::string(name);
    }
    return key;
}

void applyBandMode(form::Form1& form) {
    form.bolBandMode = form.chkBandMode.ticked();
    form.lblBandMode.Caption = form.bolBandMode ? "Band Mode" : "Frequency Mode";
}

AutomaticRecall::AutomaticRecall(form::Form1& form, form::Boxes& boxes, MemorySlots& slots,
                                 config::RecordFile& file, platform::Sound& sound)
    : form_(form), boxes_(boxes), slots_(slots), file_(file), sound_(sound), sides_(form) {
    form_.tmrFastMem.Tick.attach([this] { tmrFastMem_Timer(); });
    form_.tmrBandCh.Tick.attach([this] { tmrBandCh_Timer(); });
    form_.chkAutoMemOnOff.Click.attach([this] { chkAutoMemOnOff_Click(); });
    form_.chkAutoMemOnOff.MouseDown.attach([this] { chkAutoMemOnOff_MouseDown(); });
    form_.chkBandMode.Click.attach([this] { chkBandMode_Click(); });
    form_.HScrMemSpeedCh.Change.attach([this] { HScrMemSpeedCh_Change(); });
}

void AutomaticRecall::tmrFastMem_Timer() {
    armOutputsOff();
    if (std::exchange(form_.bolAutoOffFire, false)) {
        if (!sides_.anyRunning()) form_.cmdOff.Click.raise();
    } else {
        subSelTunerProgr();
        if (!readSource()) return;
        form_.bolFreqChanged = form_.strFreqPrev != form_.lblFreqRx.Caption.get() &&
                               form_.strFreqPrev != form_.lblLog32DataM.Caption.get() &&
                               form_.strFreqPrev != form_.lblFreqN1MM.Caption.get();
        if (form_.chkBandMode.ticked()) form_.strFreqKey = bandName(form_.strFreqKey);
        recallStep();
    }
    keepFrequency();
}

bool AutomaticRecall::readSource() {
    switch (form_.intConnProgrTuner.value()) {
    case form::kHamRadioDeluxe:
        readHamRadioDeluxe();
        return true;
    case form::kLogger32:
        readLogger32();
        return true;
    case form::kN1mmLogger:
        return readN1mm();
    default:
        return true;
    }
}

void AutomaticRecall::readHamRadioDeluxe() {
    form_.StatusBar1.Panels(form::kPanelMessage) = "";
    const std::string& frequency = form_.lblFreqRx.Caption;
    if (form_.lblFreqRx.LinkMode.get() != form::LinkLabel::kNone) announceChange(frequency);
    form_.strFreqKey = keyOf(frequency);
}

void AutomaticRecall::readLogger32() {
    form_.StatusBar1.Panels(form::kPanelMessage) = "";
    if (form_.sourceConnected()) announceChange(form_.lblLog32DataM.Caption);
    if (form_.bolLog32Conn) subFreqLog32();
    // Below 10 MHz the text begins with a blank.
    std::string_view frequency = form_.lblLog32DataM.Caption.get();
    if (frequency.starts_with(' ')) frequency.remove_prefix(1);
    form_.strFreqKey = runtime::firstCharacters(frequency, kKeyLength);
}

bool AutomaticRecall::readN1mm() {
    form_.StatusBar1.Panels(form::kPanelMessage) = "";
    const std::string& frequency = form_.lblFreqN1MM.Caption;
    const double kilohertz = runtime::leadingNumber(frequency);
    if (kilohertz == 0) return false;
    if (form_.sourceConnected()) announceChange(frequency);
    form_.strFreqKey = keyOf(runtime::shortestText(kilohertz / kKilohertzPerMegahertz));
    const std::string digits = runtime::shortestText(runtime::leadingNumber(form_.strFreqKey));
    if (digits.size() == 1) form_.strFreqKey = digits + ".";
    return true;
}

void AutomaticRecall::announceChange(const std::string& now) {
    if (form_.strFreqPrev.empty()) return;
    if (runtime::firstCharacters(form_.strFreqPrev, kKeyLength) !=
        runtime::firstCharacters(now, kKeyLength)) {
        signalBandChange();
    }
}

void AutomaticRecall::signalBandChange() {
    if (form_.bolAllarmi) subAllarme();
    if (form_.bolAllarmePOF) subAllarme();
    form_.lblBandCh.Visible = true;
    form_.tmrBandCh.Enabled = true;
}

void AutomaticRecall::subAllarme() {
    sound_.play("torvo.wav");
}

void AutomaticRecall::recallStep() {
    if (!form_.chkAutoMemOnOff.ticked() || form_.bolFreqChanged) return;
    if (form_.intFunzione == form::kSatelliteRotor || boxes_.isOpen()) return;
    // The high-resolution table takes the place of the ten memories.
    if (form_.chkHRM.ticked()) return;
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        if (isInUse(n) || !matches(n)) continue;
        // Refused once is enough: a box at every tick would help nobody.
        if (!slots_.recallAndSelect(n)) form_.chkAutoMemOnOff.Value = 0;
        return;
    }
}

bool AutomaticRecall::isInUse(int n) {
    const std::string& label = form_.lblFr[n].Caption;
    return form_.lblUsoA.Caption == label && form_.lblUsoB.Caption == label;
}

bool AutomaticRecall::matches(int n) {
    const std::string& label = form_.lblFr[n].Caption;
    // A memory without a label cannot be found by frequency, not even by one that reads as 0.
    if (label.empty() || !slots_.isStored(n)) return false;
    return runtime::leadingNumber(runtime::firstCharacters(label, kKeyLength)) ==
           std::fabs(runtime::leadingNumber(form_.strFreqKey));
}

void AutomaticRecall::keepFrequency() {
    switch (form_.intConnProgrTuner.value()) {
    case form::kHamRadioDeluxe:
        form_.strFreqPrev = form_.lblFreqRx.Caption;
        break;
    case form::kLogger32:
        form_.strFreqPrev = form_.lblLog32DataM.Caption;
        break;
    case form::kN1mmLogger:
        form_.strFreqPrev = form_.lblFreqN1MM.Caption;
        break;
    default:
        break;
    }
}

void AutomaticRecall::tmrBandCh_Timer() {
    form_.lblBandCh.Visible = false;
    form_.tmrBandCh.Enabled = false;
}

void AutomaticRecall::chkAutoMemOnOff_Click() {
    if (form_.chkAutoMemOnOff.ticked() && standsBelowZero(form_, boxes_, true)) {
        form_.chkAutoMemOnOff.Value = 0;
        return;
    }
    form_.lblAutoMemOnOff.Caption = form_.chkAutoMemOnOff.ticked() ? "Auto" : "Manual";
}

void AutomaticRecall::chkAutoMemOnOff_MouseDown() {
    if (form_.chkAutoMemOnOff.ticked()) form_.chkFastMemory.Value = 0;
}

void AutomaticRecall::chkBandMode_Click() {
    applyBandMode(form_);
}

void AutomaticRecall::HScrMemSpeedCh_Change() {
    form_.lblMemSpeedCh.Caption = std::to_string(form_.HScrMemSpeedCh.Value.get());
    form_.intMemSlowDist = form_.HScrMemSpeedCh.Value.get();
    file_.write({config::integerRecord(config::record::kSlowDistance, form_.intMemSlowDist)});
}

} // namespace memory
