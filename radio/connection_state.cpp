#include "radio/connection_state.h"

namespace radio {

void showConnected(form::Form1& form, const std::string& state) {
    form.cmdAutoMemConn.Caption = "I";
    form.cmdAutoMemConn.BackColor = form::kRed;
    showState(form, state);
    form.chkAutoMemOnOff.Enabled = true;
    form.chkFastMemory.Enabled = true;
}

void showDisconnected(form::Form1& form) {
    form.cmdAutoMemConn.Caption = "0";
    form.cmdAutoMemConn.BackColor = form::kGreen;
    showState(form, "Connect");
    for (form::CheckBox* box : {&form.chkAutoMemOnOff, &form.chkFastMemory}) {
        box->Value = 0;
        box->Enabled = false;
    }
}

} // namespace radio
