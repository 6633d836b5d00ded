#include "app/shutdown.h"

#include "config/display_colours.h"
#include "config/record_table.h"
#include "engine/side.h"
#include "memory/table_text.h"
#include "runtime/errors.h"
#include "runtime/text.h"

namespace app {

namespace record = config::record;

namespace {

/// The names of the records' values, each name once.
std::string namesOf(const std::vector<config::Record>& records) {
    std::string names, last;
    for (const config::Record& record : records) {
        const std::string name = config::recordName(record.number);
        if (name != last) names += (last.empty() ? "" : "; ") + name;
        last = name;
    }
    return names;
}

} // namespace

Shutdown::Shutdown(form::Form1& form, form::Boxes& boxes, config::RecordFile& file,
                   engine::OutputPorts& outputs, radio::FrequencySources& sources)
    : form_(form), boxes_(boxes), file_(file), outputs_(outputs), sources_(sources) {
    form_.mnuUscita.Click.attach([this] { subSalvaInUscita(); });
}

void Shutdown::stopTimers() {
    for (form::Timer* timer : engine::Sides(form_).timers())
        timer->Enabled = false;
    for (form::Timer* timer : {&form_.tmrFastMem, &form_.tmrAutoOff, &form_.tmrBandCh})
        timer->Enabled = false;
}

void Shutdown::end() {
    if (ended_) return;
    ended_ = true;
    stopTimers();
    if (!outputs_.offWithoutFail()) boxes_.critical(std::string(engine::kOutputsStillOn) + ".", "Error!");
    boxes_.cancelDialogs();
    attempt([this] { sources_.release(); }, "The frequency program was not told");
    attempt(leaveTracking, "The tracking program was not told");
    attempt([this] { save(); }, "The state of this session is not saved");
    file_.seal();
    form_.unload();
}

/// If a step fails, a box reports it, and the shutdown goes on.
void Shutdown::attempt(const std::function<void()>& step, const std::string& otherwise) {
    try {
        step();
    } catch (const runtime::RunTimeError& error) {
        boxes_.critical(std::string(error.what()) + ". " + otherwise + ".", "Error!");
    }
}

void Shutdown::save() {
    const config::Unit unit = state();
    std::string lost = "Not saved: " + namesOf(unit.records) + ". ";
    for (bool again = true; again;) {
        try {
            if (!lost.empty()) file_.write(unit);
            lost.clear(); // the journal has the changes now
            file_.finish();
            again = false;
            // A copy that did not arrive has nothing to do with this session's state.
            if (const std::string notice = file_.takeNotice(); !notice.empty())
                boxes_.critical(notice + ".", "Error!");
        } catch (const runtime::FileError& error) {
            again = boxes_.confirm(std::string(error.what()) + ". " + lost + "Try again?", "Error!");
        }
    }
    if (lost.empty()) onSaved();
}

config::Unit Shutdown::state() {
    config::Unit unit;
    std::vector<config::Record> misfits;
    const auto add = [&](auto encode, int number, const auto& value) {
        try {
            unit.records.push_back(encode(number, value));
        } catch (const runtime::RunTimeError&) {
            misfits.push_back({number});
        }
    };
    using namespace config;
    add(integerRecord, record::kFunction, form_.intFunzione);
    add(booleanRecord, record::kAutoOffEnabled, form_.bolAutoCmdOff);
    add(byteRecord, record::kMultiplierA, form_.bytMoltA);
    add(byteRecord, record::kMultiplierB, form_.bytMoltB);
    add(textRecord, record::kDisplayColour, runtime::hexText(displayColour(form_)));
    add(textRecord, record::kBackgroundColour, runtime::hexText(displayBackground(form_)));
    add(textRecord, record::kInUseA, form_.lblUsoA.Caption.get());
    add(textRecord, record::kInUseB, form_.lblUsoB.Caption.get());
    add(booleanRecord, record::kBandMode, form_.bolBandMode);
    add(taggedTextRecord, record::kConfigName, form_.varConfigName);
    add(integerRecord, record::kOffsetAzimuth, form_.HScOffsetA.Value.get());
    add(integerRecord, record::kOffsetElevation, form_.HScOffsetB.Value.get());
    // If the table is empty, the old count stays in the file.
    if (std::ssize(form_.hiResMem) > record::kTableEntriesMax) {
        misfits.push_back({record::kTableCount});
    } else if (!form_.hiResMem.empty()) {
        add(integerRecord, record::kTableCount, static_cast<int>(form_.hiResMem.size()));
        int number = record::kTableFirst;
        for (const form::TableEntry& entry : form_.hiResMem) {
            for (const std::string& column : memory::recordTexts(entry))
                add(textRecord, number++, column);
        }
    }
    if (file_.read().boolean(record::kSavePositions)) {
        add(singleRecord, record::kPositionA, form_.sngPosA);
        add(singleRecord, record::kPositionB, form_.sngPosB);
        add(singleRecord, record::kAzimuth, form_.sngPosAz);
        add(singleRecord, record::kElevation, form_.sngPosEl);
    }
    if (!misfits.empty()) {
        boxes_.critical("Too large for the file and not saved: " + namesOf(misfits) + ". The rest is saved.",
                        "Error!");
    }
    return unit;
}

} // namespace app
