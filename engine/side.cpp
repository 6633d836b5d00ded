#include "engine/side.h"

#include "config/records.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

// All differences between the engines except their names. If no reason is given, none is known; existing
// set-ups rely on the difference.
constexpr Differences kEngineA = {
    .motor = 1,
    .firstOutput = 1,
    .usbFactor = 1,
    .rotorEnd = 360,         // azimuth: one turn
    .rotorHasNoLimit = true, // azimuth moves in degrees; the position in user units stands still
    .roundsEndOfRun = true,
    .lowFast = LowSpeed::ZeroBecomesOne,
    .lowSlow = LowSpeed::BelowOneBecomesOne,
    .takesSlowAtOnce = true,
    .takesFractions = true, // azimuth: gears give fractions of a degree
    .keepsTurn = true,      // only azimuth goes round
    .mustNotRecallBelowZero = true,
    .asksWithEndOfEngineA = false,
};
constexpr Differences kEngineB = {
    .motor = 2,
    .firstOutput = 5,
    .usbFactor = 16,
    .rotorEnd = 180, // elevation: over the zenith, down to the other horizon
    .rotorHasNoLimit = false,
    .roundsEndOfRun = false,
    .lowFast = LowSpeed::Kept,
    .lowSlow = LowSpeed::Kept, // an engine that is not fitted has no speed
    .takesSlowAtOnce = false,
    .takesFractions = false,
    .keepsTurn = false,
    .mustNotRecallBelowZero = false,
    .asksWithEndOfEngineA = true,
};

} // namespace

double stepDistance(const Side& side) {
    const double stepsPerTurn = side.bytMolt.value() * side.intSteps.value();
    return stepsPerTurn == 0 ? 0 : std::fabs(side.sngMMGiro / stepsPerTurn);
}

Side sideA(form::Form1& form) {
    namespace record = config::record;
    return {kEngineA,
            {
                .sngPos = form.sngPosA,
                .sngPosRotor = form.sngPosAz,
                .bolHalfStep = form.bolHalfStepA,
                .bytMolt = form.bytMoltA,
                .intDir = form.intDirA,
                .intFase = form.intFaseA,
                .intFaseHalf = form.intFaseHalfA,
                .intUltFase = form.intUltFaseA,
                .intUltFaseHalf = form.intUltFaseHalfA,
                .bolMem = form.bolMemA,
                .sngTarget = form.sngTargetA,
                .bolTargetRotor = form.bolTargetAz,
                .sngTargetRotor = form.sngTargetAz,
                .intSteps = form.intStepsA,
                .sngMMGiro = form.sngMMGiroA,
                .intVelAlta = form.intVelAltaA,
                .intVelBassa = form.intVelBassaA,
                .intTickAlta = form.intTickAltaA,
                .intTickBassa = form.intTickBassaA,
                .intVelRot = form.intVelRotA,
                .halfSteps = form.halfStepsA,
                .bolVelAlta = form.bolVelAltaA,
                .bolManual = form.bolManualA,
                .forward = form.Timer1,
                .backward = form.Timer2,
                .lamps = {&form.out1, &form.out2, &form.out3, &form.out4},
                .shpDisplay = form.shpDisplayA,
                .lblPos = form.Label2,
                .lblPosRotor = form.lblAzimut,
                .lblRx = form.lblAzRx,
                .lblUso = form.lblUsoA,
                .lblEngine = form.lblEngineA,
                .cmdRunForward = form.cmdAv,
                .cmdRunBackward = form.cmdInd,
                .cmdJogForward = form.cmdAvMan,
                .cmdJogBackward = form.cmdIndMan,
                .cmdStop = form.cmdAlt,
                .cmdFast = form.cmdAlta,
                .cmdSlow = form.cmdBassa,
                .cmdReset = form.cmdResetA,
                .chkHalfStep = form.chkHalfStep,
                .cmbJog = form.cmbJogA,
                .otherSpeed = form.otherSpeedA,
                .fast = {form.lblMemAltaA, form.txtAltaVelA, record::kFastA},
                .slow = {form.lblBassaA, form.txtBassaVelA, record::kSlowA},
                .steps = {form.lblMemSteps, form.txtSteps, record::kStepsA},
                .units = {form.lblMMGiro, form.txtMMGiro, record::kUnitsA},
                .entryNotice = form.entryNoticeA,
                .lblUnit = form.lblUnitA,
                .lblTarget = form.lblTargetA,
                .lblToGo = form.lblToGoA,
                .bar = form.barA,
                .lblStep = form.lblStepA,
            }};
}

Side sideB(form::Form1& form) {
    namespace record = config::record;
    return {kEngineB,
            {
                .sngPos = form.sngPosB,
                .sngPosRotor = form.sngPosEl,
                .bolHalfStep = form.bolHalfStepB,
                .bytMolt = form.bytMoltB,
                .intDir = form.intDirB,
                .intFase = form.intFaseB,
                .intFaseHalf = form.intFaseHalfB,
                .intUltFase = form.intUltFaseB,
                .intUltFaseHalf = form.intUltFaseHalfB,
                .bolMem = form.bolMemB,
                .sngTarget = form.sngTargetB,
                .bolTargetRotor = form.bolTargetEl,
                .sngTargetRotor = form.sngTargetEl,
                .intSteps = form.intStepsB,
                .sngMMGiro = form.sngMMGiroB,
                .intVelAlta = form.intVelAltaB,
                .intVelBassa = form.intVelBassaB,
                .intTickAlta = form.intTickAltaB,
                .intTickBassa = form.intTickBassaB,
                .intVelRot = form.intVelRotB,
                .halfSteps = form.halfStepsB,
                .bolVelAlta = form.bolVelAltaB,
                .bolManual = form.bolManualB,
                .forward = form.Timer4,
                .backward = form.Timer3,
                .lamps = {&form.out1B, &form.out2B, &form.out3B, &form.out4B},
                .shpDisplay = form.shpDisplayB,
                .lblPos = form.Label8,
                .lblPosRotor = form.lblElev,
                .lblRx = form.lblElRx,
                .lblUso = form.lblUsoB,
                .lblEngine = form.lblEngineB,
                .cmdRunForward = form.cmdAvB,
                .cmdRunBackward = form.cmdIndB,
                .cmdJogForward = form.cmdBAvMan,
                .cmdJogBackward = form.cmdBIndMan,
                .cmdStop = form.cmdAltB,
                .cmdFast = form.cmdAltaB,
                .cmdSlow = form.cmdBassaB,
                .cmdReset = form.cmdResetB,
                .chkHalfStep = form.chkHalfStepB,
                .cmbJog = form.cmbJogB,
                .otherSpeed = form.otherSpeedB,
                .fast = {form.lblMemAltaB, form.txtAltaVelB, record::kFastB},
                .slow = {form.lblBassaB, form.txtBassaVelB, record::kSlowB},
                .steps = {form.lblMemStepsB, form.txtStepsB, record::kStepsB},
                .units = {form.lblMMGiroB, form.txtMMGiroB, record::kUnitsB},
                .entryNotice = form.entryNoticeB,
                .lblUnit = form.lblUnitB,
                .lblTarget = form.lblTargetB,
                .lblToGo = form.lblToGoB,
                .bar = form.barB,
                .lblStep = form.lblStepB,
            }};
}

std::string Side::unit() const {
    std::string unit = lblUnit.Caption;
    if (unit.ends_with(':')) unit.pop_back();
    return unit;
}

std::chrono::nanoseconds Sides::untilStep() const {
    auto shortest = std::chrono::nanoseconds::max();
    for (const form::Timer* timer : timers()) {
        if (timer->period() > timer->period().zero()) shortest = std::min(shortest, timer->untilTick());
    }
    return shortest;
}

} // namespace engine
