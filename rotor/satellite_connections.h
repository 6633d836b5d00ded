#pragma once

#include "config/record_file.h"
#include "form/dialogs.h"
#include "form/form1.h"

#include <functional>

namespace rotor {

/// The dialog that chooses the tracking program's format and the port of the tracking server.
class SatelliteConnections {
  public:
    SatelliteConnections(form::Form1& main, form::FrmSatConn& dialog, config::RecordFile& file);

    void Form_Load();
    void cmdSaveSatCfg_Click();

    /// Called after Save, so that source and port take effect at once.
    std::function<void()> onSaved;

  private:
    form::Form1& main_;
    form::FrmSatConn& dialog_;
    config::RecordFile& file_;
    form::Int16 port_;
    form::Int16 source_;
};

} // namespace rotor
