#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"
#include "platform/udp_sockets.h"
#include "radio/hamlib_source.h"
#include "radio/logger32.h"

#include <memory>
#include <vector>

namespace radio {

/// All programs that report the transceiver's frequency, and the one button that connects the chosen one.
class FrequencySources {
  public:
    FrequencySources(form::Form1& form, Logger32& logger32, platform::UdpSockets& sockets,
                     HamlibSource::Connect connectRig);

    /// The program that intConnProgrTuner selects; null if its value is invalid.
    form::FrequencySource* chosen() const;
    /// Connects or disconnects the chosen program.
    void cmdAutoMemConn_Click();
    /// Ends every connection and connection attempt, before the user chooses another program.
    void disconnect();
    /// Brings the chosen program's label to the front and names it in the status bar. Not in Satellite Rotor.
    void subSelTunerProgr();
    /// Ends every connection, when the main window closes.
    void release();

  private:
    form::Form1& form_;
    std::vector<std::unique_ptr<form::FrequencySource>> all_; // in the order of disconnecting
};

} // namespace radio
