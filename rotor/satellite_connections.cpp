#include "rotor/satellite_connections.h"

#include "config/records.h"
#include "form/key_filter.h"
#include "form/port_entry.h"
#include "rotor/tracking_data.h"

namespace rotor {

SatelliteConnections::SatelliteConnections(form::Form1& main, form::FrmSatConn& dialog,
                                           config::RecordFile& file)
    : main_(main), dialog_(dialog), file_(file) {
    dialog_.optOrbitron.Click.attach([this] { dialog_.optSatPc32.Value.load(false); });
    dialog_.optSatPc32.Click.attach([this] { dialog_.optOrbitron.Value.load(false); });
    dialog_.txtServerPort.KeyPress.attach(form::keepDigits);
    dialog_.cmdSaveSatCfg.Click.attach([this] { cmdSaveSatCfg_Click(); });
    dialog_.cmdExitSatConn.Click.attach([this] { dialog_.unload(); });
}

void SatelliteConnections::Form_Load() {
    const config::RecordImage records = file_.read();
    port_ = records.integer(config::record::kTrackingPort);
    source_ = records.integer(config::record::kTrackingProgram);
    dialog_.txtServerPort.Text = std::to_string(port_.value());
    dialog_.optOrbitron.Value = source_ == kOrbitron;
    dialog_.optSatPc32.Value = source_ == kSatPc32;
}

void SatelliteConnections::cmdSaveSatCfg_Click() {
    // 0 stands for the default port, and is saved back as 0.
    const auto port = form::portFromText(dialog_.txtServerPort.Text, 0);
    if (!port) {
        dialog_.lblPortError.Caption = form::portRange(0);
        dialog_.txtServerPort.setFocus();
        return;
    }
    port_ = *port;
    if (dialog_.optOrbitron.Value) source_ = kOrbitron;
    if (dialog_.optSatPc32.Value) source_ = kSatPc32;
    file_.write({config::integerRecord(config::record::kTrackingPort, port_),
                 config::integerRecord(config::record::kTrackingProgram, source_)});
    main_.intPortaSat = port_;
    main_.intSatSource = source_;
    main_.StatusBar1.Panels(form::kPanelTracking) = std::to_string(port_.value());
    onSaved();
    dialog_.unload();
}

} // namespace rotor
