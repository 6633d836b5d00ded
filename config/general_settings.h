#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/dialogs.h"
#include "form/form1.h"

namespace config {

/// The dialog for what belongs to no engine: jog keys, display colours, alarms, positions at exit and start.
class GeneralSettings {
  public:
    GeneralSettings(form::Form1& main, form::FrmGenSet& dialog, form::Boxes& boxes, RecordFile& file);

    void Form_Load();
    void cmdSalvaGenSet_Click();
    /// Leaves without writing; the display has its colours back.
    void cmdExitGen_Click();
    void cmbColor_Click();

  private:
    bool keysDiffer() const;

    form::Form1& main_;
    form::FrmGenSet& dialog_;
    form::Boxes& boxes_;
    RecordFile& file_;
    const form::Colour colourBefore_;
    const form::Colour backgroundBefore_;
};

} // namespace config
