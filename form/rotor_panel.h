#pragma once

#include "form/controls.h"
#include "runtime/checked.h"

namespace form {

/// Satellite Rotor: thresholds and offsets.
struct RotorPanel {
    static constexpr ScrollBar::Range kThreshold{0, 100};
    // Hundredths of a degree.
    static constexpr ScrollBar::Range kAzimuthOffset{-18000, 18000, 10, 100};
    static constexpr ScrollBar::Range kElevationOffset{-9000, 9000, 10, 100};

    explicit RotorPanel(Form& form) : form_(form) {
        cmdConnect.BackColor = kGreen;
        chkRotOnOff.Enabled = false;
    }

  private:
    Form& form_;

  public:
    Button cmdConnect{form_, "cmdConnect", "0"};          // tracking link: "0" closed, "I" open
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
};

} // namespace form
