#include "radio/logger32_source.h"

#include "radio/connection_state.h"
#include "radio/frequency_text.h"
#include "runtime/text.h"

namespace radio {

Logger32Source::Logger32Source(form::Form1& form, Logger32& logger32)
    : FrequencySource(form::kLogger32, "Logger 32", form.lblLog32DataM, "MHz"), form_(form),
      logger32_(logger32) {}

void Logger32Source::connect() {
    showConnected(form_, "Connected");
    logger32_.connect(form_.lblLog32DataM);
    form_.bolLog32Conn = true;
}

void Logger32Source::release() {
    form_.bolLog32Conn = false;
    logger32_.disconnect(form_);
    form_.lblLog32DataM.Caption = "";
}

void Logger32Source::poll() {
    if (form_.bolLog32Conn) subFreqLog32();
}

void Logger32Source::subFreqLog32() {
    const Logger32::Sighting sighting = logger32_.poll(form_);
    missingPolls_ = sighting == Logger32::Sighting::Missing ? missingPolls_ + 1 : 0;
    switch (sighting) {
    case Logger32::Sighting::Missing:
        showState(form_, "Disconnected");
        break;
    case Logger32::Sighting::New:
        showState(form_, "Connected");
        break;
    case Logger32::Sighting::Known:
        break;
    }
}

std::string Logger32Source::key() const {
    // Below 10 MHz the text begins with a blank.
    std::string_view frequency = form_.lblLog32DataM.Caption.get();
    if (frequency.starts_with(' ')) frequency.remove_prefix(1);
    return runtime::firstCharacters(frequency, form::kKeyCharacters);
}

std::optional<std::int64_t> Logger32Source::hertz() const {
    return hertzOfMegahertz(form_.lblLog32DataM.Caption.get());
}

double Logger32Source::age() const {
    return missingPolls_ * kSecondsPerPoll;
}

} // namespace radio
