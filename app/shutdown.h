#pragma once

#include "app/startup.h"
#include "config/record_file.h"
#include "engine/output_ports.h"
#include "form/boxes.h"
#include "radio/frequency_source.h"

namespace app {

/// The end of the program, by the exit menu or by closing the window: timers off, outputs off, save.
class Shutdown {
  public:
    Shutdown(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, engine::OutputPorts& outputs,
             radio::FrequencySource& source, const Startup& startup);

    /// Saves the running state, then unloads the main window.
    void subSalvaInUscita();
    /// The main window unloads: lets go of the frequency source and saves, unless that is what unloads it.
    void Form_Unload();

  private:
    void stopTimers();
    void save();

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    engine::OutputPorts& outputs_;
    radio::FrequencySource& source_;
    const Startup& startup_;
    bool saving_ = false;
    bool unloading_ = false;
};

} // namespace app
