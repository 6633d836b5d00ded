#include "rotor/tracking_links.h"

#include "rotor/tracking_data.h"

namespace rotor {

TrackingLinks::TrackingLinks(form::Form1& form, form::Boxes& boxes, Sources& sources)
    : form_(form), boxes_(boxes), sources_(sources),
      orbitron_("Orbitron", Hold::kWhileThere, [this] { return form_.lblOrbitron.isOpen(); }),
      satPc32_("SatPC32", Hold::kWhileThere, [this] { return form_.Label29.isOpen(); }) {
    sources_.add(orbitron_);
    sources_.add(satPc32_);
    form_.cmdConnect.Click.attach([this] { cmdConnect_Click(); });
    form_.lblOrbitron.LinkOpen.attach([this] { lblOrbitron_LinkOpen(); });
    form_.lblOrbitron.LinkClose.attach([this] { lblOrbitron_LinkClose(); });
    form_.lblOrbitron.LinkError.attach([this] {
        closeOrbitron();
        form_.lblOpenCom.Caption = "Disconnected";
    });
    form_.lblOrbitron.Change.attach([this] {
        if (subSatData(form_, form_.lblOrbitron.Caption)) sources_.complete(orbitron_);
    });
    form_.chkOpenCom.Click.attach([this] { chkOpenCom_Click(); });
    form_.Label29.LinkError.attach([this] {
        form_.chkOpenCom.Value = 0;
        boxes_.critical("Cannot connect to satellite data! Restart SatPc32", "Error!");
    });
    form_.Label29.LinkClose.attach([this] { form_.lblOpenCom.Caption = "Disconnected"; });
    form_.Label29.Change.attach([this] {
        if (readSatPc32Item(form_, form_.Label29.Caption)) sources_.complete(satPc32_);
    });
}

void TrackingLinks::cmdConnect_Click() {
    if (form_.cmdConnect.Caption != "0") {
        closeOrbitron();
        return;
    }
    form_.cmdConnect.Caption = "I";
    form_.cmdConnect.BackColor = form::kRed;
    form_.lblOrbitron.LinkTopic = "Orbitron|Tracking";
    form_.lblOrbitron.LinkItem = "TrackingData";
    form_.lblOrbitron.LinkMode = form::LinkLabel::kAutomatic;
}

void TrackingLinks::closeOrbitron() {
    form_.lblOrbitron.LinkMode = form::LinkLabel::kNone;
    sources_.drop(orbitron_);
    form_.cmdConnect.Caption = "0";
    form_.cmdConnect.BackColor = form::kGreen;
    form_.chkRotOnOff.Value = 0;
}

void TrackingLinks::lblOrbitron_LinkOpen() {
    form_.lblOpenCom.BackColor = form::kGreen;
    form_.lblOpenCom.Caption = "Connected";
}

void TrackingLinks::lblOrbitron_LinkClose() {
    form_.lblOpenCom.Caption = "Disconnected";
}

void TrackingLinks::chkOpenCom_Click() {
    if (form_.chkOpenCom.ticked()) {
        openSatPc32();
    } else {
        closeSatPc32();
    }
}

void TrackingLinks::openSatPc32() {
    if (onSatPc32) onSatPc32();
    form_.lblOpenCom.BackColor = form::kRed;
    form_.lblOpenCom.Caption = "Connected";
    form_.chkOpenCom.BackColor = form::kRed;
    form_.chkRotOnOff.Enabled = true;
    form_.Label29.LinkTopic = "SatPC32|SatPcDdeConv";
    form_.Label29.LinkItem = "SatPcDdeItem";
    form_.Label29.LinkMode = form::LinkLabel::kAutomatic;
}

void TrackingLinks::closeSatPc32() {
    form_.Label29.LinkMode = form::LinkLabel::kNone;
    sources_.drop(satPc32_);
    form_.lblOpenCom.ForeColor = form::kBlack;
    form_.lblOpenCom.BackColor = form::kGreen;
    form_.lblOpenCom.Caption = "Connect";
    form_.chkOpenCom.BackColor = form::kGreen;
    form_.chkRotOnOff.Value = 0;
    form_.chkRotOnOff.Enabled = false;
    if (onSatPc32) onSatPc32();
}

void TrackingLinks::close() {
    closeOrbitron();
    form_.chkOpenCom.Value = 0;
    form_.chkRotOnOff.Enabled = false;
}

} // namespace rotor
