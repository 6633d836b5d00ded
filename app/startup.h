#pragma once

#include "app/functions.h"
#include "config/record_file.h"
#include "engine/output_ports.h"
#include "engine/side.h"
#include "memory/memory_slots.h"
#include "rotor/thresholds.h"

#include <functional>
#include <string>
#include <vector>

namespace app {

/// The start-up load: reads every record of "save.cfg" into its field and control. It writes nothing to the
/// file, and a loaded value does not run the control's handler.
class Startup {
  public:
    Startup(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, engine::OutputPorts& outputs,
            engine::Motion& motion, Functions& functions, memory::MemorySlots& slots,
            rotor::Thresholds& thresholds);

    /// At start, and again whenever a named configuration has been loaded. One box reports a damaged or
    /// unreadable file.
    void Form_Load();
    /// The entries of "HiResMem.txt", with all their digits; empty when there are none.
    std::function<form::FrequencyTable()> tableFile;
    /// Brings the chosen frequency source to the front.
    std::function<void()> subSelTunerProgr;

  private:
    void readFile();
    void resetEngines();
    void loadEngines();
    void loadSpeeds();
    void loadStepModes();
    void loadMemories();
    void loadOutputsOff();
    void loadPositions();
    void loadConnections();
    void loadSettings();
    void loadRotor();
    void loadTable();
    void loadFunction();
    void loadColours();
    float finiteSingle(int record);
    /// Loads a scroll bar; a value outside its range becomes the nearer limit. Returns the loaded value.
    int loadBar(form::ScrollBar& bar, int record);
    void tellTrouble();

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    engine::OutputPorts& outputs_;
    engine::Motion& motion_;
    Functions& functions_;
    memory::MemorySlots& slots_;
    rotor::Thresholds& thresholds_;
    engine::Sides sides_;
    config::RecordImage records_;
    std::string trouble_;             // why the file could not be read
    std::vector<std::string> damage_; // the invalid values in the file
};

} // namespace app
