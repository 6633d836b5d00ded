#include "radio/hamlib_source.h"

#include "radio/connection_state.h"
#include "radio/frequency_text.h"
#include "runtime/number.h"

namespace radio {

namespace {

constexpr double kHertzPerKilohertz = 1000;
constexpr std::int64_t kHundredMegahertz = 100'000'000;
constexpr std::int64_t kHertzPerMegahertz = 1'000'000;

} // namespace

std::string kilohertzText(const RigReading& reading) {
    return reading.hertz ? runtime::shortestText(static_cast<double>(*reading.hertz) / kHertzPerKilohertz)
                         : "00000";
}

HamlibSource::HamlibSource(form::Form1& form, Connect connect)
    : FrequencySource(form::kHamlib, "Hamlib", form.lblFreqHamlib, "kHz"), form_(form),
      connect_(std::move(connect)) {}

void HamlibSource::connect() {
    release();
    showConnected(form_, "Connecting");
    rigctld_ = connect_([this](const RigReading& reading) { form_.guard([&] { told(reading); }); });
}

void HamlibSource::release() {
    rigctld_.reset();
    reading_ = {};
    form_.lblFreqHamlib.Caption = kilohertzText(reading_);
}

void HamlibSource::told(const RigReading& reading) {
    const auto noticeOf = [](const std::string& trouble) { return "Hamlib: " + trouble; };
    // What it said has been put right.
    if (form_.notice.Caption.get() == noticeOf(reading_.trouble)) form_.notice.tell("");
    if (!reading.unknown.empty() && reading.unknown != reading_.unknown)
        form_.notice.tell(noticeOf(reading.unknown));
    reading_ = reading;
    form_.lblFreqHamlib.Caption = kilohertzText(reading);
    if (reading.trouble.empty()) {
        showState(form_, "Connected", reading.unknown);
    } else {
        // It goes on trying, so the button stays as it is.
        showState(form_, "Error", reading.trouble);
        form_.notice.tell(noticeOf(reading.trouble));
    }
}

std::string HamlibSource::key() const {
    if (!reading_.hertz) return {};
    // 144 MHz is not 14: three digits equal no two characters of a label.
    if (*reading_.hertz >= kHundredMegahertz) return std::to_string(*reading_.hertz / kHertzPerMegahertz);
    return keyOfKilohertz(label.Caption.get());
}

} // namespace radio
