#include "radio/logger32.h"

#include "runtime/text.h"

namespace radio {

namespace {

constexpr const char* kName = "Logger32"; // the name of both the message and the window

// Values of wParam in Logger32's messages.
constexpr long kSubscribe = 3; // lParam: the window that listens
constexpr long kUnsubscribe = 4;
constexpr long kFrequency = 100; // lParam: hertz

} // namespace

void Logger32::connect(form::Label& frequency) {
    lngMsgLogger32_ = station_.registerMessage(kName);
    station_.findWindow(kName); // starts the search, so that the first poll has a result
    form::Form& form = frequency.form();
    lngOldWndProc_ = station_.hook(station_.ownWindow(form.name()),
                                   [this, &form, &frequency](long message, long wParam, long lParam) {
                                       form.guard([&] { receive(frequency, message, wParam, lParam); });
                                   });
}

void Logger32::receive(form::Label& frequency, long message, long wParam, long lParam) const {
    if (message != lngMsgLogger32_ || wParam != kFrequency) return;
    frequency.Caption = runtime::formatCharacters(std::to_string(lParam), "@@.@@@.@@@");
}

void Logger32::disconnect(form::Form& form) {
    if (lngHwndLogger32_ > 0) station_.post(lngHwndLogger32_, lngMsgLogger32_, kUnsubscribe, 0);
    lngHwndLogger32_ = 0;
    if (lngOldWndProc_ == 0) return;
    station_.unhook(station_.ownWindow(form.name()), lngOldWndProc_);
    lngOldWndProc_ = 0;
}

Logger32::Sighting Logger32::poll(form::Form& form) {
    const long previous = lngHwndLogger32_;
    lngHwndLogger32_ = station_.findWindow(kName);
    if (lngHwndLogger32_ < 1) return Sighting::Missing;
    if (previous != 0) return Sighting::Known;
    station_.post(lngHwndLogger32_, lngMsgLogger32_, kSubscribe, station_.ownWindow(form.name()));
    return Sighting::New;
}

} // namespace radio
