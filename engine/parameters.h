#pragma once

#include "config/record_file.h"
#include "engine/motion.h"

#include <functional>
#include <vector>

namespace engine {

/// Milliseconds of a step at `speed` steps per second, halves to even; 0 for a speed of 0.
form::Int16 stepPeriod(form::Int16 speed);

/// The four parameters of each engine: a double-click on a label opens the entry beside it, a second one or
/// Enter confirms it and writes it to "save.cfg"; Esc restores the old text. If the check or the file refuses
/// the value, the entry stays open, the reason is shown beside it, and the old value stays in force.
class Parameters {
  public:
    Parameters(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, Motion& motion);

  private:
    /// A valid entry that is not in force yet.
    struct Value {
        std::string text; // corrected
        config::Record record;
        std::function<void()> apply;
    };
    struct Entry {
        const Side& side;
        const Parameter& parameter;
        const char* wanted; // what the user may enter
        /// Throws runtime::RunTimeError for an invalid text.
        std::function<Value(const std::string& text)> read;
        /// Runs after a value has been taken.
        std::function<void()> afterwards = {};
        /// Runs at the end of every double-click, whether the value was taken or not.
        std::function<void()> always = {};
        /// The text in force while another one is typed.
        std::string before = {};
        /// Why a character that was typed is missing in the text; empty if none is.
        std::string refusal = {};
    };
    void addEntries(const Side& side);
    static Entry speed(const Side& side, bool fast);
    static Entry steps(const Side& side);
    static Entry units(const Side& side);
    void attach(Entry& entry);
    void labelDblClick(Entry& entry);
    void confirm(Entry& entry);
    void refuse(Entry& entry, const std::string& reason);
    /// Beside the entries of the engine, for as long as this one is open; else for a while.
    static void say(const Entry& entry, const std::string& what);
    /// Lets the user type, with the text selected. Another entry that is open gets its old text back.
    void open(Entry& entry);
    static void restore(Entry& entry);
    static void keyPress(Entry& entry, int& character);
    void recomputeStepsGiroA(const Side& side);

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    Motion& motion_;
    Sides sides_;
    std::vector<Entry> entries_;
};

} // namespace engine
