#pragma once

#include "form/form1.h"

#include <string>

namespace radio {

/// What every source shows of its connection: a word in lblAutoMemConn, with the reason of a failure as its
/// tool tip.
inline void showState(form::Form1& form, const std::string& state, const std::string& reason = {}) {
    form.lblAutoMemConn.Caption = state;
    form.lblAutoMemConn.ToolTip = reason;
}

/// The source is connected: the button turns over, and what follows the frequency can be switched on.
void showConnected(form::Form1& form, const std::string& state);
/// The source is given up: automatic recall and fast store go off with it.
void showDisconnected(form::Form1& form);

} // namespace radio
