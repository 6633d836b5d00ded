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

/// The start-up load: every record of "save.cfg" into its field and control. It writes nothing to the file,
/// and no value that it puts into a control runs that control's handler.
class Startup {
  public:
    Startup(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, engine::OutputPorts& outputs,
            engine::Motion& motion, Functions& functions, memory::MemorySlots& slots,
            rotor::Thresholds& thresholds);

    /// At start, and again whenever a named configuration has been loaded. A file that cannot be read, or is
    /// damaged, is told in one box.
    void Form_Load();
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
    /// Loads a bar; a value outside its range becomes the nearer end, which is what is returned.
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
    std::vector<std::string> damage_; // what in it makes no sense
};

} // namespace app
