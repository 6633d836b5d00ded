#include "engine/parameters.h"

#include "config/records.h"
#include "form/key_filter.h"
#include "runtime/number.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

constexpr int kFastest = 1000; // steps per second
constexpr double kMillisecondsPerSecond = 1000;

/// Accepts digits. Engine A, the azimuth engine, also accepts ',', '-', '.' and '/'.
void keepNumberCharacters(int& character) {
    form::keepRange(character, ',', '9');
}

/// Why a typed character was discarded.
std::string whyNot(int character, bool fractions) {
    if (character == form::TextBox::kBackspace) return "type over it, or use Delete";
    if (!fractions && (character == '.' || character == ',')) return "whole numbers only here";
    return "only digits here";
}

/// What a check has made of a number; empty if it was taken as typed.
std::string correction(const std::string& typed, const std::string& taken) {
    constexpr double kSame = 1e-6, kRounding = 0.5;
    const double wanted = runtime::parseNumber(typed);
    const double away = std::fabs(wanted - runtime::parseNumber(taken));
    if (away <= kSame * std::max(1.0, std::fabs(wanted))) return {};
    return (away <= kRounding ? "rounded to " : "limited to ") + taken;
}

} // namespace

form::Int16 stepPeriod(form::Int16 speed) {
    if (speed == 0) return 0;
    return runtime::roundToInt16(kMillisecondsPerSecond / speed.value());
}

Parameters::Parameters(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, Motion& motion)
    : form_(form), boxes_(boxes), file_(file), motion_(motion), sides_(form) {
    addEntries(sides_.a);
    addEntries(sides_.b);
    for (Entry& entry : entries_)
        attach(entry);
}

void Parameters::addEntries(const Side& side) {
    entries_.push_back(speed(side, true));
    entries_.push_back(speed(side, false));
    if (side.takesSlowAtOnce) entries_.back().afterwards = [this, &side] { motion_.slow(side); };
    entries_.push_back(steps(side));
    entries_.push_back(units(side));
    if (side.keepsTurn) entries_.back().always = [this, &side] { recomputeStepsGiroA(side); };
}

void Parameters::attach(Entry& entry) {
    form::TextBox& box = entry.parameter.box;
    box.Enabled = false;
    entry.parameter.label.DblClick.attach([this, &entry] { labelDblClick(entry); });
    box.KeyPress.attach([&entry](int& character) { keyPress(entry, character); });
    box.KeyDown.attach([this, &entry, &box](int key) {
        if (key == form::TextBox::kEscape) {
            restore(entry);
            entry.parameter.label.setFocus();
        }
        if (key != form::TextBox::kEnter) return;
        entry.parameter.label.DblClick.raise();
        if (!box.Enabled) form_.cmdOff.setFocus();
    });
}

Parameters::Entry Parameters::speed(const Side& side, bool fast) {
    const Parameter& parameter = fast ? side.fast : side.slow;
    const LowSpeed low = fast ? side.lowFast : side.lowSlow;
    return {side, parameter, "1 to 1000", [&side, &parameter, low, fast](const std::string& text) {
                form::Int16 value = runtime::parseInt16(text);
                if (value > kFastest) value = kFastest;
                if (low == LowSpeed::ZeroBecomesOne && value == 0) value = 1;
                if (low == LowSpeed::BelowOneBecomesOne && value < 1) value = 1;
                return Value{std::to_string(value.value()), config::integerRecord(parameter.record, value),
                             [&side, fast, value] {
                                 (fast ? side.intVelAlta : side.intVelBassa) = value;
                                 (fast ? side.intTickAlta : side.intTickBassa) = stepPeriod(value);
                             }};
            }};
}

Parameters::Entry Parameters::steps(const Side& side) {
    return {side, side.steps, "at most 32767", [&side](const std::string& text) {
                const form::Int16 value = runtime::parseInt16(text);
                return Value{std::to_string(value.value()), config::integerRecord(side.steps.record, value),
                             [&side, value] { side.intSteps = value; }};
            }};
}

Parameters::Entry Parameters::units(const Side& side) {
    return {side, side.units, "a number", [&side](const std::string& text) {
                const float value = runtime::parseSingle(text);
                return Value{runtime::shortestText(value), config::singleRecord(side.units.record, value),
                             [&side, value] { side.sngMMGiro = value; }};
            }};
}

void Parameters::labelDblClick(Entry& entry) {
    if (entry.parameter.box.Enabled) {
        confirm(entry);
    } else {
        open(entry);
    }
    if (entry.always) entry.always();
}

void Parameters::confirm(Entry& entry) {
    form::TextBox& box = entry.parameter.box;
    const std::string& text = box.Text;
    if (text.empty() || text == " ") {
        boxes_.critical("Insert a valid data", "No data entry!");
        open(entry);
        return;
    }
    std::string corrected;
    try {
        const Value value = entry.read(text);
        corrected = correction(text, value.text);
        if (corrected.empty() && !entry.refusal.empty()) corrected = value.text + ", " + entry.refusal;
        file_.write({value.record});
        value.apply();
        box.Text = value.text;
    } catch (const runtime::FileError& error) {
        refuse(entry, error.what());
        return;
    } catch (const runtime::RunTimeError&) { // not a number, or out of range
        refuse(entry, std::string("enter ") + entry.wanted);
        return;
    }
    box.Enabled = false;
    say(entry, corrected);
    if (entry.afterwards) entry.afterwards();
}

void Parameters::refuse(Entry& entry, const std::string& reason) {
    say(entry, reason);
    open(entry);
}

void Parameters::say(const Entry& entry, const std::string& what) {
    const std::string text = what.empty() ? "" : entry.parameter.label.Caption.get() + ": " + what;
    if (entry.parameter.box.Enabled) {
        entry.side.entryNotice.stay(text);
    } else {
        entry.side.entryNotice.tell(text);
    }
}

void Parameters::keyPress(Entry& entry, int& character) {
    const bool fractions = entry.side.takesFractions && &entry.parameter == &entry.side.units;
    const int typed = character;
    if (fractions) {
        keepNumberCharacters(character);
    } else {
        form::keepDigits(character);
    }
    if (character == typed) return;
    entry.refusal = whyNot(typed, fractions);
    say(entry, entry.refusal);
}

void Parameters::restore(Entry& entry) {
    if (!entry.parameter.box.Enabled) return;
    entry.parameter.box.Text = entry.before;
    entry.parameter.box.Enabled = false;
    say(entry, "unchanged, " + entry.before);
}

void Parameters::open(Entry& entry) {
    if (!entry.parameter.box.Enabled) {
        say(entry, "");
        entry.before = entry.parameter.box.Text;
        entry.refusal.clear();
    }
    for (Entry& other : entries_) {
        if (&other != &entry) restore(other);
    }
    entry.parameter.box.Enabled = true;
    entry.parameter.box.setFocus();
    entry.parameter.box.selectAll();
}

void Parameters::recomputeStepsGiroA(const Side& side) {
    try {
        const float turns = runtime::divideSingle(360, runtime::parseSingle(side.units.box.Text.get()));
        form_.dblStepsGiroA = double{runtime::parseSingle(side.steps.box.Text.get())} * turns;
    } catch (const runtime::RunTimeError&) {
        // If the text is not a number, the value stays.
    }
}

} // namespace engine
