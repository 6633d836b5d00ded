#include "radio/frequency_source.h"

#include "radio/n1mm.h"
#include "runtime/errors.h"

namespace radio {

FrequencySource::FrequencySource(form::Form1& form, Logger32& logger32, platform::UdpSockets& sockets)
    : form_(form), logger32_(logger32), sockets_(sockets) {
    form_.cmdAutoMemConn.Click.attach([this] { cmdAutoMemConn_Click(); });
    form_.lblFreqRx.LinkOpen.attach([this] { showConnected("Connected"); });
    form_.lblFreqRx.LinkError.attach([this] { form_.lblAutoMemConn.Caption = "Error"; });
    form_.lblFreqRx.LinkClose.attach([this] { lblFreqRx_LinkClose(); });
    form_.chkAutoMemOnOff.Enabled = false;
    form_.chkFastMemory.Enabled = false;
}

void FrequencySource::cmdAutoMemConn_Click() {
    switch (form_.intConnProgrTuner.value()) {
    case form::kHamRadioDeluxe:
        toggleHamRadioDeluxe();
        break;
    case form::kLogger32:
        toggleLogger32();
        break;
    case form::kN1mmLogger:
        toggleN1mm();
        break;
    default:
        break;
    }
}

void FrequencySource::disconnect() {
    if (form_.sourceConnected()) cmdAutoMemConn_Click();
    // A link that is still being made would open beside the next program.
    form_.lblFreqRx.LinkMode = form::LinkLabel::kNone;
}

void FrequencySource::toggleHamRadioDeluxe() {
    if (form_.sourceConnected()) {
        form_.lblFreqRx.LinkMode = form::LinkLabel::kNone;
        showDisconnected();
    } else {
        // LinkOpen or LinkError follows.
        form_.lblFreqRx.LinkTopic = kHrdTopic;
        form_.lblFreqRx.LinkItem = kHrdItem;
        form_.lblFreqRx.LinkMode = form::LinkLabel::kAutomatic;
    }
}

void FrequencySource::lblFreqRx_LinkClose() {
    form_.lblAutoMemConn.Caption = "Connect";
    form_.lblFreqRx.Caption = "";
}

void FrequencySource::toggleLogger32() {
    if (form_.sourceConnected()) {
        showDisconnected();
        form_.bolLog32Conn = false;
        logger32_.disconnect(form_);
        form_.lblLog32DataM.Caption = "";
    } else {
        // The subscription follows with the next poll.
        showConnected("Connected");
        logger32_.connect(form_.lblLog32DataM);
        form_.bolLog32Conn = true;
    }
}

void FrequencySource::subFreqLog32() {
    switch (logger32_.poll(form_)) {
    case Logger32::Sighting::Missing:
        form_.lblAutoMemConn.Caption = "Disconnected";
        break;
    case Logger32::Sighting::New:
        form_.lblAutoMemConn.Caption = "Connected";
        break;
    case Logger32::Sighting::Known:
        break;
    }
}

void FrequencySource::toggleN1mm() {
    wskN1mmLog_.reset();
    if (form_.sourceConnected()) {
        showDisconnected();
        return;
    }
    try {
        wskN1mmLog_ = sockets_.bind(n1mmPort(form_.intPortaN1MM), [this](const std::string& datagram) {
            form_.guard([&] { form_.lblFreqN1MM.Caption = n1mmKilohertz(datagram); });
        });
    } catch (const runtime::ObjectError& error) {
        form_.lblAutoMemConn.Caption = "Error";
        form_.lblAutoMemConn.ToolTip = error.what();
        return;
    }
    showConnected("Listening");
    form_.lblFreqN1MM.Caption = "00000";
}

void FrequencySource::showConnected(const char* state) {
    form_.cmdAutoMemConn.Caption = "I";
    form_.cmdAutoMemConn.BackColor = form::kRed;
    form_.lblAutoMemConn.Caption = state;
    form_.lblAutoMemConn.ToolTip = "";
    form_.chkAutoMemOnOff.Enabled = true;
    form_.chkFastMemory.Enabled = true;
}

void FrequencySource::showDisconnected() {
    form_.cmdAutoMemConn.Caption = "0";
    form_.cmdAutoMemConn.BackColor = form::kGreen;
    form_.lblAutoMemConn.Caption = "Connect";
    for (form::CheckBox* box : {&form_.chkAutoMemOnOff, &form_.chkFastMemory}) {
        box->Value = 0;
        box->Enabled = false;
    }
}

void FrequencySource::subSelTunerProgr() {
    if (form_.intFunzione == form::kSatelliteRotor) return;
    const auto choose = [this](form::Label& label, const char* name) {
        label.bringToFront();
        form_.StatusBar1.Panels(form::kPanelSource) = name;
    };
    switch (form_.intConnProgrTuner.value()) {
    case form::kHamRadioDeluxe:
        choose(form_.lblFreqRx, "HRD");
        break;
    case form::kLogger32:
        choose(form_.lblLog32DataM, "Logger 32");
        break;
    case form::kN1mmLogger:
        choose(form_.lblFreqN1MM, "N1MM Logger");
        break;
    default:
        break;
    }
}

void FrequencySource::release() {
    logger32_.disconnect(form_);
    form_.lblFreqRx.LinkMode = form::LinkLabel::kNone;
    wskN1mmLog_.reset();
}

} // namespace radio
