#pragma once

#include "config/record_file.h"
#include "engine/output_ports.h"
#include "form/boxes.h"
#include "radio/frequency_sources.h"

namespace app {

/// The end of the program, by the exit menu or by closing the window: timers off, outputs off, save.
class Shutdown {
  public:
    Shutdown(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, engine::OutputPorts& outputs,
             radio::FrequencySources& sources);

    /// Disconnects the tracking programs.
    std::function<void()> leaveTracking;
    /// Called when the running state has been saved.
    std::function<void()> onSaved;

    /// The values that are saved only at exit. If one does not fit its record, a box reports it and it is
    /// left out.
    config::Unit state();

    /// The exit menu: saves the running state and unloads the main window.
    void subSalvaInUscita() { end(); }
    /// The main window unloads: saves the same state. Only the first of the two calls saves.
    void Form_Unload() { end(); }

  private:
    void end();
    void stopTimers();
    void attempt(const std::function<void()>& step, const std::string& otherwise);
    void save();

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    engine::OutputPorts& outputs_;
    radio::FrequencySources& sources_;
    bool ended_ = false;
};

} // namespace app
