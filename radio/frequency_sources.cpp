#include "radio/frequency_sources.h"

#include "radio/connection_state.h"
#include "radio/ham_radio_deluxe.h"
#include "radio/logger32_source.h"
#include "radio/n1mm_source.h"

namespace radio {

FrequencySources::FrequencySources(form::Form1& form, Logger32& logger32, platform::UdpSockets& sockets,
                                   HamlibSource::Connect connectRig)
    : form_(form) {
    all_.push_back(std::make_unique<Logger32Source>(form, logger32));
    all_.push_back(std::make_unique<HamRadioDeluxe>(form));
    all_.push_back(std::make_unique<N1mmSource>(form, sockets));
    all_.push_back(std::make_unique<HamlibSource>(form, std::move(connectRig)));
    form_.cmdAutoMemConn.Click.attach([this] { cmdAutoMemConn_Click(); });
    form_.chkAutoMemOnOff.Enabled = false;
    form_.chkFastMemory.Enabled = false;
}

form::FrequencySource* FrequencySources::chosen() const {
    for (const auto& source : all_) {
        if (form_.intConnProgrTuner == source->number) return source.get();
    }
    return nullptr;
}

void FrequencySources::cmdAutoMemConn_Click() {
    form::FrequencySource* const source = chosen();
    if (!source) return;
    if (form_.sourceConnected()) {
        showDisconnected(form_);
        source->release();
    } else {
        source->connect();
    }
}

void FrequencySources::disconnect() {
    if (form_.sourceConnected()) showDisconnected(form_);
    // Otherwise a connection attempt could succeed after the user has chosen another program.
    release();
}

void FrequencySources::subSelTunerProgr() {
    if (form_.intFunzione == form::kSatelliteRotor) return;
    if (const form::FrequencySource* const source = chosen()) {
        source->label.bringToFront();
        form_.StatusBar1.Panels(form::kPanelSource) = source->name;
    }
}

void FrequencySources::release() {
    for (const auto& source : all_)
        source->release();
}

} // namespace radio
