#pragma once

#include "form/controls.h"
#include "form/link_label.h"
#include "runtime/checked.h"

namespace form {

/// Values of intConnProgrTuner.
enum FrequencyProgram { kNoProgram = 0, kHamRadioDeluxe = 1, kLogger32 = 2, kN1mmLogger = 3, kHamlib = 4 };

/// The transceiver's frequency: one label for each program; the chosen program's label is in front.
struct RadioPanel {
    RadioPanel(Form& form, platform::DdeLinks& links) : form_(form), lblFreqRx(form, "lblFreqRx", links) {
        cmdAutoMemConn.BackColor = kGreen;
        cmdGoOn.Visible = false;
    }

  private:
    Form& form_;

  public:
    bool sourceConnected() const { return !(cmdAutoMemConn.Caption == "0"); }

    runtime::Int16 intConnProgrTuner; // a FrequencyProgram
    runtime::Int16 intPortaN1MM;      // UDP port; 0 stands for 12060
    bool bolLog32Conn = false;        // the Logger32 connection is switched on

    LinkLabel lblFreqRx;                                 // Ham Radio Deluxe: MHz
    Label lblLog32DataM{form_, "lblLog32DataM"};         // Logger32: MHz with points, "14.200.000"
    Label lblFreqN1MM{form_, "lblFreqN1MM"};             // N1MM Logger: kHz
    Label lblFreqHamlib{form_, "lblFreqHamlib"};         // Hamlib: kHz
    Button cmdAutoMemConn{form_, "cmdAutoMemConn", "0"}; // "0" disconnected, "I" connected
    Label lblFreqNote{form_, "lblFreqNote"};             // unit, band and age of the frequency
    Label lblFit{form_, "lblFit"};                       // whether the antenna fits the frequency
    Button cmdGoOn{form_, "cmdGoOn", "Go on"};           // with a recall that did not arrive
    Label lblAutoMemConn{form_, "lblAutoMemConn", "Connect"};
};

} // namespace form
