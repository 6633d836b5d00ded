#include "radio/ham_radio_deluxe.h"

#include "radio/connection_state.h"
#include "radio/frequency_text.h"

namespace radio {

void linkToHamRadioDeluxe(form::LinkLabel& label) {
    label.LinkTopic = "HRD_RADIO_000|HRD_CAT";
    label.LinkItem = "HRD_FREQUENCY";
    label.LinkMode = form::LinkLabel::kAutomatic;
}

HamRadioDeluxe::HamRadioDeluxe(form::Form1& form)
    : FrequencySource(form::kHamRadioDeluxe, "HRD", form.lblFreqRx, "MHz"), form_(form) {
    form_.lblFreqRx.LinkOpen.attach([this] { showConnected(form_, "Connected"); });
    form_.lblFreqRx.LinkError.attach([this] { showState(form_, "Error"); });
    form_.lblFreqRx.LinkClose.attach([this] { lblFreqRx_LinkClose(); });
}

void HamRadioDeluxe::connect() {
    linkToHamRadioDeluxe(form_.lblFreqRx);
}

void HamRadioDeluxe::release() {
    form_.lblFreqRx.LinkMode = form::LinkLabel::kNone;
}

void HamRadioDeluxe::lblFreqRx_LinkClose() {
    showState(form_, "Connect");
    form_.lblFreqRx.Caption = "";
}

bool HamRadioDeluxe::announcesBands() const {
    return form_.lblFreqRx.LinkMode.get() != form::LinkLabel::kNone;
}

std::string HamRadioDeluxe::key() const {
    return keyOfMegahertz(form_.lblFreqRx.Caption.get());
}

std::optional<std::int64_t> HamRadioDeluxe::hertz() const {
    return hertzOfMegahertz(form_.lblFreqRx.Caption.get());
}

} // namespace radio
