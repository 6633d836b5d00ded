#pragma once

#include "form/form1.h"
#include "platform/udp_sockets.h"
#include "radio/logger32.h"

namespace radio {

/// Topic and item of Ham Radio Deluxe's DDE server.
constexpr const char* kHrdTopic = "HRD_RADIO_000|HRD_CAT";
constexpr const char* kHrdItem = "HRD_FREQUENCY";

/// The main window's link to the program that tells the transceiver's frequency.
class FrequencySource {
  public:
    FrequencySource(form::Form1& form, Logger32& logger32, platform::UdpSockets& sockets);

    /// Connects or disconnects the chosen program.
    void cmdAutoMemConn_Click();
    /// Disconnects whatever is connected or being connected, before another program may be chosen.
    void disconnect();
    /// Brings the chosen program's label to the front and names it in the status bar. Not in Satellite Rotor.
    void subSelTunerProgr();
    /// One poll of Logger32.
    void subFreqLog32();
    void lblFreqRx_LinkClose();
    /// The main window goes: whatever is connected is let go.
    void release();

  private:
    void toggleHamRadioDeluxe();
    void toggleLogger32();
    void toggleN1mm();
    void showConnected(const char* state);
    void showDisconnected();

    form::Form1& form_;
    Logger32& logger32_;
    platform::UdpSockets& sockets_;
    std::unique_ptr<platform::UdpSocket> wskN1mmLog_;
};

} // namespace radio
