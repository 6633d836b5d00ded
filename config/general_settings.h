#pragma once

#include "config/record_file.h"
#include "engine/side.h"
#include "form/boxes.h"
#include "form/dialogs.h"
#include "form/form1.h"

#include <array>
#include <functional>

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

    /// Keeps the tuner's settings and uses them. Throws runtime::FileError.
    std::function<void(const form::TunerSettings&)> keepTuner;

  private:
    bool keysDiffer() const;
    struct Backlash {
        form::TextBox& steps;
        form::Label& units;
        int form::TunerSettings::*value;
        const engine::Side& side;
    };
    std::array<Backlash, 2> backlashes();
    /// Shows the play in user units, or what is wrong with the entry. False when it is no entry.
    bool readBacklash(const Backlash& backlash, form::TunerSettings& settings);

    form::Form1& main_;
    form::FrmGenSet& dialog_;
    form::Boxes& boxes_;
    RecordFile& file_;
    engine::Sides sides_;
    const form::Colour colourBefore_;
    const form::Colour backgroundBefore_;
};

} // namespace config
