#pragma once

#include "form/controls.h"
#include "form/frequency_table.h"
#include "form/tuner_settings.h"

#include <cstdint>
#include <optional>

namespace form {

/// The frequency table: positions of both engines over the transceiver's frequency.
struct TablePanel {
    explicit TablePanel(Form& form) : form_(form) {}

  private:
    Form& form_;

  public:
    FrequencyTable hiResMem; // records 99 and 100 to 899, with full digits in "HiResMem.txt"
    TunerSettings tuner;
    std::optional<std::int64_t> frequencyNow; // hertz, as the chosen source reports it
    double frequencySeconds = 0;              // its age

    CheckBox chkHRM{form_, "chkHRM", "Frequency &Table"}; // the table instead of the ten memories
    Menu mnuFileMemHR{form_, "mnuFileMemHR", "Frequency &Table…"};
};

} // namespace form
