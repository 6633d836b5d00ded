#include "config/general_settings.h"

#include "config/display_colours.h"
#include "config/records.h"
#include "engine/approach.h"
#include "form/key_filter.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

namespace config {

namespace {
constexpr int kMostBacklash = 10000; // steps
} // namespace

GeneralSettings::GeneralSettings(form::Form1& main, form::FrmGenSet& dialog, form::Boxes& boxes,
                                 RecordFile& file)
    : main_(main), dialog_(dialog), boxes_(boxes), file_(file), sides_(main),
      colourBefore_(displayColour(main)), backgroundBefore_(displayBackground(main)) {
    for (form::TextBox* box : {&dialog_.txtCW1, &dialog_.txtCCW1, &dialog_.txtCW2, &dialog_.txtCCW2}) {
        box->MaxLength = 1;
        box->KeyPress.attach([box](int& character) {
            // The letter replaces the one before.
            box->selectAll();
            form::keepRange(character, 'a', 'z');
        });
    }
    for (const Backlash& backlash : backlashes()) {
        backlash.steps.MaxLength = 5;
        backlash.steps.KeyPress.attach(form::keepDigits);
        backlash.steps.Change.attach([this, backlash] {
            form::TunerSettings unused;
            readBacklash(backlash, unused);
        });
    }
    dialog_.cmbColor.Click.attach([this] { cmbColor_Click(); });
    dialog_.cmdSalvaGenSet.Click.attach([this] { cmdSalvaGenSet_Click(); });
    dialog_.cmdExitGen.Click.attach([this] { cmdExitGen_Click(); });
    dialog_.onCancel = [this] { cmdExitGen_Click(); };
}

void GeneralSettings::Form_Load() {
    RecordImage records = file_.read();
    dialog_.txtCCW1.Text = records.text(record::kKeyCcw1);
    dialog_.txtCW1.Text = records.text(record::kKeyCw1);
    dialog_.txtCCW2.Text = records.text(record::kKeyCcw2);
    dialog_.txtCW2.Text = records.text(record::kKeyCw2);
    dialog_.chkSalvaM.Value = records.boolean(record::kSavePositions) ? 1 : 0;
    dialog_.chkCaricaInAvvio.Value = records.boolean(record::kLoadPositions) ? 1 : 0;
    dialog_.chkAlarmOnOff.Value = records.boolean(record::kAlarms) ? 1 : 0;
    dialog_.chkWaitTransmitting.Value = main_.tuner.waitWhileTransmitting ? 1 : 0;
    for (const Backlash& backlash : backlashes()) {
        backlash.steps.Text = std::to_string(main_.tuner.*backlash.value);
        backlash.steps.Change.raise();
    }
}

std::array<GeneralSettings::Backlash, 2> GeneralSettings::backlashes() {
    return {{{dialog_.txtBacklash1, dialog_.lblBacklash1, &form::TunerSettings::backlash1, sides_.a},
             {dialog_.txtBacklash2, dialog_.lblBacklash2, &form::TunerSettings::backlash2, sides_.b}}};
}

bool GeneralSettings::readBacklash(const Backlash& backlash, form::TunerSettings& settings) {
    const std::string& text = backlash.steps.Text;
    const int steps = static_cast<int>(runtime::leadingNumber(text));
    if (text.empty() || steps > kMostBacklash) {
        backlash.units.Caption = "0 to " + std::to_string(kMostBacklash) + " steps";
        return false;
    }
    settings.*backlash.value = steps;
    const auto units = static_cast<float>(steps * engine::stepDistance(backlash.side));
    backlash.units.Caption = "= " + runtime::formatShown(units) + " " + backlash.side.unit();
    return true;
}

bool GeneralSettings::keysDiffer() const {
    // The key for engine 1 clockwise is compared with none of the others.
    const std::string& ccw1 = dialog_.txtCCW1.Text;
    const std::string& cw2 = dialog_.txtCW2.Text;
    const std::string& ccw2 = dialog_.txtCCW2.Text;
    return cw2 != ccw1 && ccw2 != ccw1 && ccw2 != cw2;
}

void GeneralSettings::cmdSalvaGenSet_Click() {
    if (!keysDiffer()) {
        boxes_.critical("Please, choose another letter", "Found similar keys!");
        return;
    }
    form::TunerSettings tuner = main_.tuner;
    tuner.waitWhileTransmitting = dialog_.chkWaitTransmitting.ticked();
    for (const Backlash& backlash : backlashes()) {
        if (readBacklash(backlash, tuner)) continue;
        backlash.steps.setFocus();
        return;
    }
    const std::string& ccw1 = dialog_.txtCCW1.Text;
    const std::string& cw1 = dialog_.txtCW1.Text;
    const std::string& ccw2 = dialog_.txtCCW2.Text;
    const std::string& cw2 = dialog_.txtCW2.Text;
    const bool alarms = dialog_.chkAlarmOnOff.ticked();
    // On disk first: where that fails, Cancel still leaves everything as it was.
    const form::TunerSettings before = main_.tuner;
    keepTuner(tuner);
    const std::vector<Record> records = {
        booleanRecord(record::kSavePositions, dialog_.chkSalvaM.ticked()),
        booleanRecord(record::kLoadPositions, dialog_.chkCaricaInAvvio.ticked()),
        textRecord(record::kDisplayColour, runtime::hexText(displayColour(main_))),
        textRecord(record::kBackgroundColour, runtime::hexText(displayBackground(main_))),
        textRecord(record::kKeyCcw1, ccw1),
        textRecord(record::kKeyCw1, cw1),
        textRecord(record::kKeyCcw2, ccw2),
        textRecord(record::kKeyCw2, cw2),
        booleanRecord(record::kAlarms, alarms)};
    try {
        file_.write(records);
    } catch (const runtime::FileError&) {
        keepTuner(before);
        throw;
    }
    main_.strCCW1 = ccw1;
    main_.strCCW2 = ccw2;
    main_.strCW1 = cw1;
    main_.strCW2 = cw2;
    main_.bolAllarmi = alarms;
    dialog_.unload();
}

void GeneralSettings::cmdExitGen_Click() {
    applyDisplayColour(main_, colourBefore_);
    applyDisplayBackground(main_, backgroundBefore_);
    dialog_.unload();
}

void GeneralSettings::cmbColor_Click() {
    const int choice = dialog_.cmbColor.ListIndex;
    dialog_.cmbColor.ListIndex = form::FrmGenSet::kTitle;
    const std::string& title = dialog_.cmbColor.List.at(static_cast<std::size_t>(choice));
    if (choice == form::FrmGenSet::kDisplay) {
        if (const auto colour = boxes_.chooseColour(displayColour(main_), title))
            applyDisplayColour(main_, *colour);
    } else if (choice == form::FrmGenSet::kBackground) {
        if (const auto colour = boxes_.chooseColour(displayBackground(main_), title)) {
            applyDisplayBackground(main_, *colour);
        }
    }
}

} // namespace config
