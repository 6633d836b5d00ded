#include "memory/automatic_recall.h"

#include "config/records.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace memory {

namespace {

constexpr std::int64_t kHertzPerKilohertz = 1000;

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
                                 TableRecall& table, config::RecordFile& file, platform::Sound& sound)
    : form_(form), boxes_(boxes), slots_(slots), table_(table), file_(file), sound_(sound), sides_(form) {
    form_.tmrFastMem.Tick.attach([this] { tmrFastMem_Timer(); });
    form_.tmrBandCh.Tick.attach([this] { tmrBandCh_Timer(); });
    form_.chkAutoMemOnOff.Click.attach([this] { chkAutoMemOnOff_Click(); });
    form_.chkAutoMemOnOff.MouseDown.attach([this] { chkAutoMemOnOff_MouseDown(); });
    form_.chkBandMode.Click.attach([this] { chkBandMode_Click(); });
    form_.chkExact.Click.attach([this] { chkExact_Click(); });
    form_.chkHRM.Click.attach([this] { chkHRM_Click(); });
    form_.HScrMemSpeedCh.Change.attach([this] { HScrMemSpeedCh_Change(); });
}

void AutomaticRecall::tmrFastMem_Timer() {
    armOutputsOff();
    readFrequency(chosenSource());
    if (std::exchange(form_.bolAutoOffFire, false)) {
        if (!sides_.anyRunning()) form_.cmdOff.Click.raise();
    } else {
        subSelTunerProgr();
        form::FrequencySource* const source = chosenSource();
        if (source && !readSource(*source)) return;
        form_.bolFreqChanged = frequencyChanged(source);
        if (form_.chkBandMode.ticked()) form_.strFreqKey = bandName(form_.strFreqKey);
        recallStep(source);
    }
    if (const form::FrequencySource* const source = chosenSource()) form_.strFreqPrev = source->label.Caption;
}

bool AutomaticRecall::readSource(form::FrequencySource& source) {
    form_.StatusBar1.Panels(form::kPanelMessage) = "";
    if (!source.hasFrequency()) return false;
    if (source.announcesBands()) announceChange(source.label.Caption);
    source.poll();
    form_.strFreqKey = source.key();
    return true;
}

bool AutomaticRecall::frequencyChanged(const form::FrequencySource* source) const {
    // Any of these three is enough, whichever program is chosen.
    const std::array<const form::Label*, 4> labels = {&form_.lblFreqRx, &form_.lblLog32DataM,
                                                      &form_.lblFreqN1MM, source ? &source->label : nullptr};
    return std::none_of(labels.begin(), labels.end(), [this](const form::Label* label) {
        return label && label->Caption == form_.strFreqPrev;
    });
}

void AutomaticRecall::announceChange(const std::string& now) {
    if (form_.strFreqPrev.empty()) return;
    if (runtime::firstCharacters(form_.strFreqPrev, form::kKeyCharacters) !=
        runtime::firstCharacters(now, form::kKeyCharacters)) {
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

void AutomaticRecall::readFrequency(const form::FrequencySource* source) {
    const bool known = source && form_.sourceConnected();
    form_.frequencyNow = known ? source->hertz() : std::nullopt;
    form_.frequencySeconds = known ? source->age() : 0;
}

void AutomaticRecall::recallStep(const form::FrequencySource* source) {
    if (!form_.chkAutoMemOnOff.ticked() || form_.bolFreqChanged) return;
    if (form_.intFunzione == form::kSatelliteRotor || boxes_.isOpen() || staysSemiAuto()) return;
    // The table takes the place of the ten memories.
    const int n = form_.chkHRM.ticked() ? 0 : memoryToRecall();
    if (!(form_.chkHRM.ticked() ? table_.isDue() : n > 0) || waits(source)) return;
    const bool recalled = n > 0 ? slots_.recallAndSelect(n) : table_.subHiResMem();
    // Refused once is enough: a box at every tick would help nobody.
    if (!recalled) form_.chkAutoMemOnOff.Value = 0;
}

bool AutomaticRecall::waits(const form::FrequencySource* source) {
    if (!form_.tuner.waitWhileTransmitting || !source || !source->transmitting()) return false;
    form_.notice.tell("Waits: transmitting");
    return true;
}

bool AutomaticRecall::staysSemiAuto() {
    if (form_.lblAutoMemOnOff.Caption != kSemiAuto) return false;
    if (!semiAutoHertz_) semiAutoHertz_ = form_.frequencyNow;
    if (!form_.frequencyNow) return true;
    const std::int64_t way = std::abs(*form_.frequencyNow - *semiAutoHertz_);
    if (way <= form_.tuner.semiAutoKilohertz * kHertzPerKilohertz) return true;
    form_.lblAutoMemOnOff.Caption = "Auto";
    return false;
}

void AutomaticRecall::semiAuto() {
    semiAutoHertz_ = form_.frequencyNow;
    form_.lblAutoMemOnOff.Caption = kSemiAuto;
}

int AutomaticRecall::memoryToRecall() {
    if (form_.chkExact.ticked()) {
        const int nearest = nearestMemory(form_.frequencyNow);
        // Labels that differ look alike where the list cuts them: the selection tells which one is in use.
        return nearest > 0 && isInUse(nearest) && form_.Option[nearest].Value ? 0 : nearest;
    }
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        if (!isInUse(n) && matches(n, form_.strFreqKey)) return n;
    }
    return 0;
}

std::vector<int> AutomaticRecall::fitting(const form::FrequencySource& source) {
    std::vector<int> memories;
    if (form_.chkExact.ticked()) {
        if (const int nearest = nearestMemory(source.hertz()); nearest > 0) memories.push_back(nearest);
        return memories;
    }
    const std::string key = form_.chkBandMode.ticked() ? bandName(source.key()) : source.key();
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        if (matches(n, key)) memories.push_back(n);
    }
    return memories;
}

int AutomaticRecall::nearestMemory(const std::optional<std::int64_t>& frequency) {
    if (!frequency) return 0;
    int nearest = 0;
    double distance = static_cast<double>(form_.tuner.exactKilohertz * kHertzPerKilohertz);
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        std::string label = slots_.label(n);
        std::ranges::replace(label, ',', '.');
        const double hertz = runtime::leadingNumber(label) * form::kHertzPerMegahertz;
        const double away = std::fabs(hertz - static_cast<double>(*frequency));
        if (away > distance || (away == distance && nearest > 0) || !slots_.isStored(n)) continue;
        nearest = n;
        distance = away;
    }
    return nearest;
}

bool AutomaticRecall::isInUse(int n) {
    const std::string& label = form_.lblFr[n].Caption;
    return form_.lblUsoA.Caption == label && form_.lblUsoB.Caption == label;
}

bool AutomaticRecall::matches(int n, const std::string& key) {
    const std::string& label = form_.lblFr[n].Caption;
    // A memory without a label cannot be found by frequency, not even by one that reads as 0.
    if (label.empty() || !slots_.isStored(n)) return false;
    return runtime::leadingNumber(runtime::firstCharacters(label, form::kKeyCharacters)) ==
           std::fabs(runtime::leadingNumber(key));
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
    table_.forget();
}

void AutomaticRecall::chkAutoMemOnOff_MouseDown() {
    if (form_.chkAutoMemOnOff.ticked()) form_.chkFastMemory.Value = 0;
}

void AutomaticRecall::chkBandMode_Click() {
    applyBandMode(form_);
    if (form_.bolBandMode) form_.chkExact.Value = 0;
}

void AutomaticRecall::chkExact_Click() {
    if (form_.chkExact.ticked()) form_.chkBandMode.Value = 0;
    form_.tuner.exact = form_.chkExact.ticked();
    keepSettings();
}

void AutomaticRecall::chkHRM_Click() {
    form_.tuner.useTable = form_.chkHRM.ticked();
    keepSettings();
    table_.forget();
}

void AutomaticRecall::HScrMemSpeedCh_Change() {
    form_.lblMemSpeedCh.Caption = std::to_string(form_.HScrMemSpeedCh.Value.get());
    form_.intMemSlowDist = form_.HScrMemSpeedCh.Value.get();
    file_.write({config::integerRecord(config::record::kSlowDistance, form_.intMemSlowDist)});
}

} // namespace memory
