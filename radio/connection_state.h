#pragma once

#include "form/form1.h"

#include <string>

namespace radio {

inline constexpr double kSecondsPerPoll = form::Form1::kPollMilliseconds / 1000.0;

/// Shows the connection state of a source: a word in lblAutoMemConn, and the reason of a failure as its tool
/// tip.
inline void showState(form::Form1& form, const std::string& state, const std::string& reason = {}) {
    form.lblAutoMemConn.Caption = state;
    form.lblAutoMemConn.ToolTip = reason;
}

/// The source is connected: the button shows it, and automatic recall and fast store can be switched on.
void showConnected(form::Form1& form, const std::string& state);
/// The source is disconnected: automatic recall and fast store are switched off.
void showDisconnected(form::Form1& form);

} // namespace radio
