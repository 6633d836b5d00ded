#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/form1.h"

#include <functional>
#include <vector>

namespace engine {

/// Milliseconds of a step at `speed` steps per second, halves to even; 0 for a speed of 0.
form::Int16 stepPeriod(form::Int16 speed);

/// The four parameters of each engine: a double-click on a label opens the entry beside it, a second one or
/// Enter confirms it and writes it to "save.cfg".
class Parameters {
  public:
    Parameters(form::Form1& form, form::Boxes& boxes, config::RecordFile& file);

  private:
    struct Entry {
        form::Label& label;
        form::TextBox& box;
        /// Corrects a text that is out of range, stores the value, and returns its record. Throws what a text
        /// that is no value throws, with nothing stored.
        std::function<config::Record(form::TextBox& box)> store;
        std::function<void()> afterwards = {};
        bool saysWhenRefused = true;
        bool takesFractions = false;
        /// Runs at the end of every double-click, whichever way it went.
        std::function<void()> always = {};
    };
    Entry speed(form::Label& label, form::TextBox& box, form::Int16& speed, form::Int16& period, int record,
                const std::function<bool(form::Int16)>& isTooLow);
    Entry steps(form::Label& label, form::TextBox& box, form::Int16& steps, int record);
    Entry units(form::Label& label, form::TextBox& box, float& units, int record);
    void confirm(Entry& entry);
    void labelDblClick(Entry& entry);
    /// Lets the user type, with the text selected.
    static void open(Entry& entry);
    void recomputeStepsGiroA();

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    std::vector<Entry> entries_;
};

} // namespace engine
