#include "app/shutdown.h"

#include "config/display_colours.h"
#include "config/records.h"
#include "engine/side.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

namespace app {

namespace record = config::record;

namespace {

constexpr std::size_t kTableTextMax = 6;

/// A number as the table holds it: a blank or a minus sign in front, six characters in all.
std::string tableText(float value) {
    const std::string digits = runtime::shortestText(value);
    return runtime::firstCharacters(digits.starts_with('-') ? digits : " " + digits, kTableTextMax);
}

} // namespace

Shutdown::Shutdown(form::Form1& form, form::Boxes& boxes, config::RecordFile& file,
                   engine::OutputPorts& outputs, radio::FrequencySources& sources, const Startup& startup)
    : form_(form), boxes_(boxes), file_(file), outputs_(outputs), sources_(sources), startup_(startup) {
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

/// A step that fails says so, and the end goes on.
void Shutdown::attempt(const std::function<void()>& step, const std::string& otherwise) {
    try {
        step();
    } catch (const runtime::RunTimeError& error) {
        boxes_.critical(std::string(error.what()) + ". " + otherwise + ".", "Error!");
    }
}

void Shutdown::save() {
    if (!startup_.fileWasRead()) {
        throw runtime::FileError("\"" + file_.path().filename().string() +
                                 "\" could not be read at the start");
    }
    std::vector<config::Record> records = {
        config::integerRecord(record::kFunction, form_.intFunzione),
        config::booleanRecord(record::kAutoOffEnabled, form_.bolAutoCmdOff),
        config::byteRecord(record::kMultiplierA, form_.bytMoltA),
        config::byteRecord(record::kMultiplierB, form_.bytMoltB),
        config::textRecord(record::kDisplayColour, runtime::hexText(config::displayColour(form_))),
        config::textRecord(record::kBackgroundColour, runtime::hexText(config::displayBackground(form_))),
        config::textRecord(record::kInUseA, form_.lblUsoA.Caption.get()),
        config::textRecord(record::kInUseB, form_.lblUsoB.Caption.get()),
        config::booleanRecord(record::kBandMode, form_.bolBandMode),
        config::taggedTextRecord(record::kConfigName, form_.varConfigName),
        config::integerRecord(record::kOffsetAzimuth, form_.HScOffsetA.Value.get()),
        config::integerRecord(record::kOffsetElevation, form_.HScOffsetB.Value.get()),
    };
    // The count is written with each entry, so an empty table leaves the old count standing.
    int number = record::kTableFirst;
    for (const auto& entry : form_.hiResMem) {
        if (number > record::kLast) throw runtime::SubscriptError();
        records.push_back(
            config::integerRecord(record::kTableCount, static_cast<std::int64_t>(form_.hiResMem.size())));
        for (const float column : entry)
            records.push_back(config::textRecord(number++, tableText(column)));
    }
    file_.write(records);
    if (!file_.read().boolean(record::kSavePositions)) return;
    file_.write({config::singleRecord(record::kPositionA, form_.sngPosA),
                 config::singleRecord(record::kPositionB, form_.sngPosB),
                 config::singleRecord(record::kAzimuth, form_.sngPosAz),
                 config::singleRecord(record::kElevation, form_.sngPosEl)});
}

} // namespace app
