#include "app/functions.h"

#include <algorithm>
#include <array>

namespace app {

struct Functions::Texts {
    const char* panel;
    const char* engineA;
    const char* engineB;
    const char* resetA;
    const char* resetB;
    const char* unit;
    const char* unitsPerTurn;
};

Functions::Functions(form::Form1& form, memory::MemorySlots& slots, engine::Motion& motion)
    : form_(form), slots_(slots), motion_(motion) {
    form_.mnuCoilTuner.Click.attach([this] { mnuCoilTuner_Click(); });
    form_.mnuAmpli.Click.attach([this] { mnuAmpli_Click(); });
    form_.mnuSat.Click.attach([this] { mnuSat_Click(); });
    form_.mnuSatConn.Enabled = false;
    showFrames(false);
    showTexts(textsOf(form::kNoFunction));
}

const Functions::Texts& Functions::textsOf(int function) {
    static constexpr Texts kNone = {"Choose a function", "Engine A", "Engine B", "Reset A",
                                    "Reset B",           "",         "units/r"};
    static constexpr Texts kCoil = {"Coil Tuner", "Engine 1", "Engine 2", "Reset 1",
                                    "Reset 2",    "mm:",      "mm/r"};
    static constexpr Texts kTune = {"Tune & Load", "Tune", "Load", "Reset Tn", "Reset Ld", "dots:", "dots/r"};
    static constexpr Texts kRotor = {"Satellite Rotor", "Azimuth", "Elevation", "Reset Az",
                                     "Reset El",        "deg:",    "deg/r"};
    switch (function) {
    case form::kCoilTuner:
        return kCoil;
    case form::kTuneAndLoad:
        return kTune;
    case form::kSatelliteRotor:
        return kRotor;
    default:
        return kNone;
    }
}

std::string Functions::nameOf(int function) {
    return textsOf(function).panel;
}

void Functions::choose(int function) {
    if (form_.intFunzione == function) return;
    if (onChoice) onChoice(function);
    switchOn(function);
}

void Functions::switchOn(int function) {
    const bool rotor = function == form::kSatelliteRotor;
    const bool tuner = function == form::kCoilTuner || function == form::kTuneAndLoad;
    form_.intFunzione = rotor || tuner ? function : int{form::kNoFunction};
    onChange(form_.intFunzione.value());
    form_.cmdConnect.Enabled = rotor;
    form_.mnuSatConn.Enabled = rotor;
    form_.tmrFastMem.Enabled = true;
    form_.mnuTunConn.Enabled = !rotor;
    showFrames(rotor);
    if (rotor) slots_.subResetPressedMem();
    if (rotor || tuner) {
        slots_.subAzzeraLabel();
    } else {
        motion_.stopBoth();
    }
    // If the port fails, the error boundary reports it; the function is switched on anyway.
    form_.cmdOff.Click.fire();
    showTexts(textsOf(form_.intFunzione.value()));
    const engine::Sides sides(form_);
    for (const engine::Side* side : {&sides.a, &sides.b})
        side->entryNotice.stay(""); // it names a parameter that may have another name now
    form_.framInvite.Visible = form_.intFunzione == form::kNoFunction && !isSetUp();
}

bool Functions::isSetUp() const {
    const engine::Sides sides(form_);
    return std::ranges::any_of(std::array{&sides.a, &sides.b}, [](const engine::Side* side) {
        return side->intSteps != 0 || side->sngMMGiro != 0 || side->intVelAlta != 0 || side->intVelBassa != 0;
    });
}

void Functions::showFrames(bool rotor) {
    for (form::Control* control : std::initializer_list<form::Control*>{
             &form_.lblAzRx, &form_.lblElRx, &form_.lblOffsetA, &form_.lblOffsetB, &form_.lblOffsetName,
             &form_.lblOffsetnameb, &form_.HScOffsetA, &form_.HScOffsetB, &form_.framSat, &form_.lblAzimut,
             &form_.lblElev, &form_.cmdAv, &form_.cmdInd, &form_.cmdAvB, &form_.cmdIndB}) {
        control->Visible = rotor;
    }
    for (form::Control* control : std::initializer_list<form::Control*>{
             &form_.lblUsoA, &form_.lblUsoB, &form_.framTuner, &form_.Label2, &form_.Label8}) {
        control->Visible = !rotor;
    }
}

void Functions::showTexts(const Texts& texts) {
    form_.cmdResetA.Caption = texts.resetA;
    form_.cmdResetB.Caption = texts.resetB;
    form_.StatusBar1.Panels(form::kPanelFunction) = texts.panel;
    for (form::Label* label : {&form_.lblUnitA, &form_.lblUnitB})
        label->Caption = texts.unit;
    for (form::Label* label : {&form_.lblMMGiro, &form_.lblMMGiroB})
        label->Caption = texts.unitsPerTurn;
    form_.lblEngineA.Caption = texts.engineA;
    form_.lblEngineB.Caption = texts.engineB;
    form_.mnuCoilTuner.Checked = form_.intFunzione == form::kCoilTuner;
    form_.mnuAmpli.Checked = form_.intFunzione == form::kTuneAndLoad;
    form_.mnuSat.Checked = form_.intFunzione == form::kSatelliteRotor;
}

} // namespace app
