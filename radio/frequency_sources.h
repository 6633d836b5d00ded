#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"
#include "platform/udp_sockets.h"
#include "radio/logger32.h"

#include <memory>
#include <vector>

namespace radio {

/// All programs that report the transceiver's frequency, and the one button that connects the chosen one.
class FrequencySources {
  public:
    FrequencySources(form::Form1& form, Logger32& logger32, platform::UdpSockets& sockets);

    /// The program that intConnProgrTuner names; null where it names none.
    form::FrequencySource* chosen() const;
    /// Connects or disconnects the chosen program.
    void cmdAutoMemConn_Click();
    /// Disconnects whatever is connected or being connected, before another program may be chosen.
    void disconnect();
    /// Brings the chosen program's label to the front and names it in the status bar. Not in Satellite Rotor.
    void subSelTunerProgr();
    /// The main window goes: whatever is connected is let go.
    void release();

  private:
    form::Form1& form_;
    std::vector<std::unique_ptr<form::FrequencySource>> all_; // in the order in which they are released
};

} // namespace radio
