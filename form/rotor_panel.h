#pragma once

#include "form/controls.h"
#include "form/direction.h"
#include "form/link_label.h"
#include "form/timer.h"
#include "runtime/checked.h"

#include <functional>
#include <optional>

namespace form {

/// What the sky plot shows besides the antenna.
struct RotorPlan {
    std::optional<Direction> target;         // of the source that holds the target, offsets added
    std::optional<Direction> goal;           // the place of the rotator to which the antenna moves
    double azimuthMin = 0, azimuthMax = 360; // the range's ends, in degrees of the rotator
    bool operator==(const RotorPlan&) const = default;
};

/// Satellite Rotor: what the tracking programs send, the thresholds, the offsets, and what the antenna does.
struct RotorPanel {
    static constexpr ScrollBar::Range kThreshold{0, 100};
    // Hundredths of a degree.
    static constexpr ScrollBar::Range kAzimuthOffset{-18000, 18000, 10, 100};
    static constexpr ScrollBar::Range kElevationOffset{-9000, 9000, 10, 100};

    static constexpr int kRefreshMilliseconds = 200;
    static constexpr int kStatePollMilliseconds = 500;
    /// After this silence, bytes without a line end count as a line.
    static constexpr int kSilenceMilliseconds = 100;

    RotorPanel(Form& form, platform::Timers& timers, platform::DdeLinks& links)
        : form_(form), Timer5(form, "Timer5", timers, kStatePollMilliseconds),
          tmrDispRefr(form, "tmrDispRefr", timers, kRefreshMilliseconds),
          tmrTrackingRetry(form, "tmrTrackingRetry", timers),
          tmrTrackingSilence(form, "tmrTrackingSilence", timers, kSilenceMilliseconds),
          lblOrbitron(form, "lblOrbitron", links), Label29(form, "Label29", links) {
        cmdConnect.BackColor = kGreen;
        chkOpenCom.BackColor = kGreen;
        chkRotOnOff.Enabled = false;
        cmdUndoCalibrate.Enabled = false;
    }

  private:
    Form& form_;

  public:
    runtime::Int16 intPortaSat;  // record 45: port of the tracking server; 0 stands for 6969
    runtime::Int16 intSatSource; // record 81: the tracking program whose format is expected

    Timer Timer5;                                                       // polls the tracking server's state
    Timer tmrDispRefr;                                                  // looks at the axes and the target
    Timer tmrTrackingRetry;                                             // connects again after a loss
    Timer tmrTrackingSilence;                                           // ends a line that has no end
    LinkLabel lblOrbitron;                                              // Orbitron: one line of tracking text
    LinkLabel Label29;                                                  // SatPC32: its tracking text
    Label lblRealAz{form_, "lblRealAz"}, lblRealEl{form_, "lblRealEl"}; // as received
    CheckBox chkOpenCom{form_, "chkOpenCom", "SatPC32"};
    Label lblOpenCom{form_, "lblOpenCom", "Connect"}; // state of the tracking link

    Label lblRotctld{form_, "lblRotctld"}; // the address for rotator programs, and how many are connected

    Button cmdConnect{form_, "cmdConnect", "0"};          // Orbitron's link: "0" closed, "I" open
    CheckBox chkRotOnOff{form_, "chkRotOnOff", "Follow"}; // automatic following
    ScrollBar HScroll1{form_, "HScroll1", kThreshold};    // record 40
    ScrollBar HScroll2{form_, "HScroll2", kThreshold};    // record 32
    ScrollBar HScroll3{form_, "HScroll3", kThreshold};    // record 39
    ScrollBar HScroll4{form_, "HScroll4", kThreshold};    // record 33
    ScrollBar HScroll5{form_, "HScroll5", kThreshold};    // record 35
    ScrollBar HScroll6{form_, "HScroll6", kThreshold};    // record 34
    Label lblAccCurve{form_, "lblAccCurve", "0"};         // HScroll1
    Label lblHiSpOnAz{form_, "lblHiSpOnAz", "0"};         // HScroll2
    Label lblAntiRipEl{form_, "lblAntiRipEl", "0"};       // HScroll3
    Label lblHiSpOnEL{form_, "lblHiSpOnEL", "0"};         // HScroll4
    Label lblAutoRStEl{form_, "lblAutoRStEl", "0"};       // HScroll5
    Label lblAutoRStAz{form_, "lblAutoRStAz", "0"};       // HScroll6
    ScrollBar HScOffsetA{form_, "HScOffsetA", kAzimuthOffset};
    ScrollBar HScOffsetB{form_, "HScOffsetB", kElevationOffset};
    Label lblOffsetName{form_, "lblOffsetName", "AZ Offset"},
        lblOffsetnameb{form_, "lblOffsetnameb", "EL Offset"};
    Label lblOffsetA{form_, "lblOffsetA", "0.00"}, lblOffsetB{form_, "lblOffsetB", "0.00"}; // degrees
    Label lblAzRx{form_, "lblAzRx"}, lblElRx{form_, "lblElRx"}; // received, offsets added

    // What moves the antenna.
    Label lblSource{form_, "lblSource"};         // the program that holds the target, or "lost"
    Label lblRotorState{form_, "lblRotorState"}; // what the antenna does, and for how long
    Button cmdPark{form_, "cmdPark", "Park"};
    TextBox txtPointAz{form_, "txtPointAz"}, txtPointEl{form_, "txtPointEl"}; // degrees
    Button cmdPoint{form_, "cmdPoint", "Point"};
    Button cmdCalibrate{form_, "cmdCalibrate", "Calibrate"};
    Button cmdUndoCalibrate{form_, "cmdUndoCalibrate", "Undo"};
    RotorPlan plan;
    /// The user has pressed the sky plot there.
    std::function<void(const Direction&)> onSkyPressed;
};

} // namespace form
