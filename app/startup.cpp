#include "app/startup.h"

#include "app/auto_outputs_off.h"
#include "config/display_colours.h"
#include "config/record_table.h"
#include "engine/parameters.h"
#include "engine/position.h"
#include "engine/stepper.h"
#include "memory/automatic_recall.h"
#include "memory/frequency_table.h"
#include "memory/table_text.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <cmath>

namespace app {

namespace record = config::record;

namespace {

constexpr int kHalfStepMultiplier = 2;

} // namespace

Startup::Startup(form::Form1& form, form::Boxes& boxes, config::RecordFile& file,
                 engine::OutputPorts& outputs, engine::Motion& motion, Functions& functions,
                 memory::MemorySlots& slots, rotor::Thresholds& thresholds)
    : form_(form), boxes_(boxes), file_(file), outputs_(outputs), motion_(motion), functions_(functions),
      slots_(slots), thresholds_(thresholds), sides_(form) {}

void Startup::Form_Load() {
    form_.bolAvvisoReset = false;
    resetEngines();
    readFile();
    loadEngines();
    loadMemories();
    loadRotor();
    loadOutputsOff();
    loadPositions();
    loadConnections();
    loadSettings();
    loadTable();
    loadColours();
    loadFunction();
    // If the port fails, the error boundary reports it, and the load goes on.
    form_.guard([this] { outputs_.writePortOff(); });
    form_.bolAvvisoReset = true;
    form_.tmrFastMem.Enabled = true;
    tellTrouble();
}

void Startup::readFile() {
    trouble_.clear();
    damage_.clear();
    records_ = {};
    try {
        records_ = file_.read();
    } catch (const runtime::FileError& error) {
        trouble_ = std::string(error.what()) + ". The program goes on without its settings.";
    }
    if (records_.truncated()) damage_.emplace_back("the file ends inside a record");
}

void Startup::resetEngines() {
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        motion_.stop(*side);
        side->entryNotice.stay("");
        side->intDir = 0;
        // The half-step index is not set at the start: it keeps its value.
        side->intFase = 1;
    }
}

void Startup::loadEngines() {
    form_.intStepsA = records_.integer(record::kStepsA);
    form_.sngMMGiroA = finiteSingle(record::kUnitsA);
    form_.intVelAltaA = records_.integer(record::kFastA);
    form_.intVelBassaA = records_.integer(record::kSlowA);
    form_.intVelAltaB = records_.integer(record::kFastB);
    form_.intVelBassaB = records_.integer(record::kSlowB);
    form_.intStepsB = records_.integer(record::kStepsB);
    form_.sngMMGiroB = finiteSingle(record::kUnitsB);
    loadSpeeds();
    form_.txtSteps.Text = std::to_string(form_.intStepsA.value());
    form_.txtStepsB.Text = std::to_string(form_.intStepsB.value());
    form_.txtMMGiro.Text = runtime::shortestText(form_.sngMMGiroA);
    form_.txtMMGiroB.Text = runtime::shortestText(form_.sngMMGiroB);
    for (form::TextBox* box :
         {&form_.txtAltaVelA, &form_.txtAltaVelB, &form_.txtBassaVelA, &form_.txtBassaVelB, &form_.txtSteps,
          &form_.txtStepsB, &form_.txtMMGiro, &form_.txtMMGiroB}) {
        box->Enabled = false;
    }
    loadStepModes();
}

void Startup::loadSpeeds() {
    form_.intTickAltaA = engine::stepPeriod(form_.intVelAltaA);
    form_.intTickBassaA = engine::stepPeriod(form_.intVelBassaA);
    form_.intTickAltaB = engine::stepPeriod(form_.intVelAltaB);
    form_.intTickBassaB = engine::stepPeriod(form_.intVelBassaB);
    form_.txtAltaVelA.Text = std::to_string(form_.intVelAltaA.value());
    form_.txtAltaVelB.Text = std::to_string(form_.intVelAltaB.value());
    form_.txtBassaVelA.Text = std::to_string(form_.intVelBassaA.value());
    form_.txtBassaVelB.Text = std::to_string(form_.intVelBassaB.value());
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        side->forward.Interval = side->intTickBassa.value();
        side->backward.Interval = side->intTickBassa.value();
        motion_.slow(*side);
    }
}

void Startup::loadStepModes() {
    form_.chkHalfStep.Value.load(records_.byte(record::kMultiplierA) == kHalfStepMultiplier ? 1 : 0);
    form_.chkHalfStepB.Value.load(records_.byte(record::kMultiplierB) == kHalfStepMultiplier ? 1 : 0);
    engine::Stepper::applyStepMode(sides_.a);
    engine::Stepper::applyStepMode(sides_.b);
}

void Startup::loadMemories() {
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        form_.strMemPosA(n) = records_.text(record::kMemoryPosA + n);
        form_.strMemPosB(n) = records_.text(record::kMemoryPosB + n);
        slots_.show(n, records_.text(record::kMemoryLabel + n));
    }
    slots_.subResetPressedMem();
    form_.intMemSlowDist = loadBar(form_.HScrMemSpeedCh, record::kSlowDistance);
    form_.lblMemSpeedCh.Caption = std::to_string(form_.intMemSlowDist.value());
    // Only the two stored values of a boolean count; any other leaves the box as it is.
    const form::Int16 bandMode = records_.integer(record::kBandMode);
    if (bandMode == -1) form_.chkBandMode.Value.load(1);
    if (bandMode == 0) form_.chkBandMode.Value.load(0);
    memory::applyBandMode(form_);
    // Each excludes the other; the records count more than twinstep.ini.
    if (form_.bolBandMode) {
        form_.chkExact.Value.load(0);
        form_.tuner.exact = false;
    }
}

void Startup::loadRotor() {
    for (const rotor::Threshold& threshold : rotor::thresholds(form_)) {
        loadBar(threshold.bar, threshold.record);
    }
    for (std::size_t i = 0; i < form_.spareSettings.size(); ++i) {
        form_.spareSettings.at(i) = records_.integer(record::kSpareFirst + static_cast<int>(i));
    }
    loadBar(form_.HScOffsetA, record::kOffsetAzimuth);
    loadBar(form_.HScOffsetB, record::kOffsetElevation);
    thresholds_.show();
}

void Startup::loadOutputsOff() {
    form_.bolAutoCmdOff = records_.boolean(record::kAutoOffEnabled);
    form_.chkAutoCmdOff.Value.load(form_.bolAutoCmdOff ? 1 : 0);
    const int seconds = records_.integer(record::kAutoOffSeconds).value();
    form_.hScrCmdOff.load(seconds);
    const int usable = form_.hScrCmdOff.Value;
    if (seconds != 0 && seconds != usable) damage_.push_back(config::recordName(record::kAutoOffSeconds));
    // A delay that was never set is 0 and never fires, although the bar shows its minimum.
    form_.intAutoCmdOffSec = seconds == 0 ? 0 : usable;
    form_.lblAutoCmdOff.Caption = std::to_string(form_.intAutoCmdOffSec.value());
    form_.tmrAutoOff.Interval = AutoOutputsOff::countdown(form_.intAutoCmdOffSec);
}

void Startup::loadPositions() {
    form_.sngPosA = finiteSingle(record::kPositionA);
    form_.sngPosB = finiteSingle(record::kPositionB);
    form_.sngPosAz = finiteSingle(record::kAzimuth);
    form_.sngPosEl = finiteSingle(record::kElevation);
    form_.Label2.Caption = runtime::formatShown(form_.sngPosA);
    form_.Label8.Caption = runtime::formatShown(form_.sngPosB);
    form_.lblAzimut.Caption = runtime::formatShown(form_.sngPosAz);
    form_.lblElev.Caption = runtime::formatShown(form_.sngPosEl);
    form_.bolCaricaInAvvio = records_.boolean(record::kLoadPositions);
}

void Startup::loadConnections() {
    form_.intConnProgrTuner = records_.integer(record::kFrequencyProgram);
    form_.intPortaN1MM = records_.integer(record::kN1mmPort);
    form_.intPortaSat = records_.integer(record::kTrackingPort);
    form_.intSatSource = records_.integer(record::kTrackingProgram);
    form_.StatusBar1.Panels(form::kPanelTracking) = std::to_string(form_.intPortaSat.value());
}

void Startup::loadSettings() {
    form_.strCCW1 = records_.text(record::kKeyCcw1);
    form_.strCW1 = records_.text(record::kKeyCw1);
    form_.strCCW2 = records_.text(record::kKeyCcw2);
    form_.strCW2 = records_.text(record::kKeyCw2);
    form_.bolAllarmi = records_.boolean(record::kAlarms);
    form_.varConfigName = records_.taggedText(record::kConfigName);
    form_.StatusBar1.Panels(form::kPanelConfiguration) = form_.varConfigName;
}

void Startup::loadTable() {
    form_.hiResMem.clear();
    const int count = records_.integer(record::kTableCount).value();
    try {
        if (count < 0 || count > record::kTableEntriesMax) throw runtime::SubscriptError();
        for (int i = 0; i < count; ++i) {
            const auto column = [&](int k) {
                const int number = record::kTableFirst + record::kTableColumns * i + k;
                // The number that a single shows, not the digits that it only seems to have.
                return runtime::parseNumber(
                    runtime::shortestText(runtime::parseSingle(records_.text(number))));
            };
            form_.hiResMem.push_back({column(0), column(1), column(2), column(3)});
        }
        form_.hiResMem = memory::withFullDigits(memory::byFrequency(form_.hiResMem), tableFile());
    } catch (const runtime::RunTimeError&) {
        // An invalid table is dropped, and the load goes on. An empty table is not written at exit, so the
        // file keeps its table.
        form_.hiResMem.clear();
        damage_.push_back(config::recordName(record::kTableCount));
    }
}

void Startup::loadFunction() {
    functions_.switchOn(records_.integer(record::kFunction).value());
    subSelTunerProgr();
    const std::string inUseA = records_.text(record::kInUseA);
    const std::string inUseB = records_.text(record::kInUseB);
    if (form_.bolCaricaInAvvio) {
        form_.lblUsoA.Caption = inUseA;
        form_.lblUsoB.Caption = inUseB;
    }
    form_.bolCaricaInAvvio = false;
}

void Startup::loadColours() {
    const std::string display = records_.text(record::kDisplayColour);
    const std::string background = records_.text(record::kBackgroundColour);
    config::applyDisplayColour(form_, config::colourFromText(display, form::kDefaultDisplay));
    config::applyDisplayBackground(form_,
                                   config::colourFromText(background, form::kDefaultDisplayBackground));
}

int Startup::loadBar(form::ScrollBar& bar, int number) {
    const int stored = records_.integer(number).value();
    bar.load(stored);
    if (bar.Value != stored) damage_.push_back(config::recordName(number));
    return bar.Value;
}

float Startup::finiteSingle(int number) {
    const float value = records_.single(number);
    if (std::isfinite(value)) return value;
    damage_.push_back(config::recordName(number));
    return 0;
}

void Startup::tellTrouble() {
    for (const int number : records_.damaged())
        damage_.push_back(config::recordName(number));
    if (!damage_.empty()) {
        std::string list;
        for (const std::string& what : damage_)
            list += (list.empty() ? "" : "; ") + what;
        trouble_ = "\"" + file_.path().filename().string() + "\" is damaged: " + list +
                   ". All that could be read is in use, and the file was left as it is.";
    }
    records_ = {};
    if (!trouble_.empty()) boxes_.critical(trouble_, "Error!");
}

} // namespace app
