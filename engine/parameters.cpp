#include "engine/parameters.h"

#include "config/records.h"
#include "form/key_filter.h"
#include "runtime/number.h"

namespace engine {

namespace {

constexpr int kFastest = 1000; // steps per second
constexpr double kMillisecondsPerSecond = 1000;

/// Digits, and what engine A may have beside them, being the azimuth engine: ',', '-', '.' and '/'.
void keepNumberCharacters(int& character) {
    form::keepRange(character, ',', '9');
}

} // namespace

form::Int16 stepPeriod(form::Int16 speed) {
    if (speed == 0) return 0;
    return runtime::roundToInt16(kMillisecondsPerSecond / speed.value());
}

Parameters::Parameters(form::Form1& form, form::Boxes& boxes, config::RecordFile& file)
    : form_(form), boxes_(boxes), file_(file) {
    namespace record = config::record;
    // The lower checks differ from engine to engine and from speed to speed.
    const auto isZero = [](form::Int16 value) { return value == 0; };
    const auto isBelowOne = [](form::Int16 value) { return value < 1; };
    const auto isOne = [](form::Int16 value) { return value == 1; }; // becomes 1 again: 0 gets through
    const auto never = [](form::Int16) { return false; };
    form::Form1& f = form_;
    entries_.push_back(
        speed(f.lblMemAltaA, f.txtAltaVelA, f.intVelAltaA, f.intTickAltaA, record::kFastA, isZero));
    entries_.push_back(
        speed(f.lblMemAltaB, f.txtAltaVelB, f.intVelAltaB, f.intTickAltaB, record::kFastB, never));
    entries_.push_back(
        speed(f.lblBassaA, f.txtBassaVelA, f.intVelBassaA, f.intTickBassaA, record::kSlowA, isBelowOne));
    // Only engine A takes a new slow speed at once.
    entries_.back().afterwards = [this] { form_.cmdBassa.Click.raise(); };
    entries_.push_back(
        speed(f.lblBassaB, f.txtBassaVelB, f.intVelBassaB, f.intTickBassaB, record::kSlowB, isOne));
    entries_.push_back(steps(f.lblMemSteps, f.txtSteps, f.intStepsA, record::kStepsA));
    entries_.push_back(steps(f.lblMemStepsB, f.txtStepsB, f.intStepsB, record::kStepsB));
    entries_.push_back(units(f.lblMMGiro, f.txtMMGiro, f.sngMMGiroA, record::kUnitsA));
    entries_.back().takesFractions = true;
    entries_.back().always = [this] { recomputeStepsGiroA(); };
    entries_.push_back(units(f.lblMMGiroB, f.txtMMGiroB, f.sngMMGiroB, record::kUnitsB));

    for (Entry& entry : entries_) {
        entry.box.Enabled = false;
        entry.label.DblClick.attach([this, &entry] { labelDblClick(entry); });
        entry.box.KeyPress.attach(entry.takesFractions ? keepNumberCharacters : form::keepDigits);
        entry.box.KeyDown.attach([this, &entry](int key) {
            if (key != form::TextBox::kEnter) return;
            entry.label.DblClick.raise();
            if (!entry.box.Enabled) form_.cmdOff.setFocus();
        });
    }
}

Parameters::Entry Parameters::speed(form::Label& label, form::TextBox& box, form::Int16& speed,
                                    form::Int16& period, int record,
                                    const std::function<bool(form::Int16)>& isTooLow) {
    const auto store = [&speed, &period, record, isTooLow](form::TextBox& text) {
        form::Int16 value = runtime::parseInt16(text.Text.get());
        if (value > kFastest) value = kFastest;
        if (isTooLow(value)) value = 1;
        const form::Int16 newPeriod = stepPeriod(value);
        text.Text = std::to_string(value.value());
        speed = value;
        period = newPeriod;
        return config::integerRecord(record, value);
    };
    return {label, box, store};
}

Parameters::Entry Parameters::steps(form::Label& label, form::TextBox& box, form::Int16& steps, int record) {
    const auto store = [&steps, record](form::TextBox& text) {
        steps = runtime::parseInt16(text.Text.get());
        text.Text = std::to_string(steps.value());
        return config::integerRecord(record, steps);
    };
    return {label, box, store};
}

Parameters::Entry Parameters::units(form::Label& label, form::TextBox& box, float& units, int record) {
    const auto store = [&units, record](form::TextBox& text) {
        units = runtime::parseSingle(text.Text.get());
        text.Text = runtime::shortestText(units);
        return config::singleRecord(record, units);
    };
    Entry entry{label, box, store};
    entry.saysWhenRefused = false;
    return entry;
}

void Parameters::labelDblClick(Entry& entry) {
    try {
        if (entry.box.Enabled) {
            confirm(entry);
        } else {
            open(entry);
        }
    } catch (const runtime::RunTimeError&) {
        if (entry.always) entry.always();
        throw;
    }
    if (entry.always) entry.always();
}

void Parameters::confirm(Entry& entry) {
    const std::string& text = entry.box.Text;
    if (text.empty() || text == " ") {
        boxes_.critical("Insert a valid data", "No data entry!");
        open(entry);
        return;
    }
    try {
        const config::Record record = entry.store(entry.box);
        entry.box.Enabled = false;
        file_.write({record});
    } catch (const runtime::FileError&) {
        throw;
    } catch (const runtime::RunTimeError&) {
        // No number, or none that fits. Units are refused without a box.
        if (entry.saysWhenRefused) {
            boxes_.critical("Insert a valid data", "No data entry!");
        } else {
            form_.StatusBar1.Panels(form::kPanelMessage) = "No data entry!";
        }
        open(entry);
        return;
    }
    if (entry.afterwards) entry.afterwards();
}

void Parameters::open(Entry& entry) {
    entry.box.Enabled = true;
    entry.box.setFocus();
    entry.box.selectAll();
}

void Parameters::recomputeStepsGiroA() {
    try {
        const float turns = runtime::divideSingle(360, runtime::parseSingle(form_.txtMMGiro.Text.get()));
        form_.dblStepsGiroA = double{runtime::parseSingle(form_.txtSteps.Text.get())} * turns;
    } catch (const runtime::RunTimeError&) {
        // A text that gives no number leaves the figure as it was.
    }
}

} // namespace engine
