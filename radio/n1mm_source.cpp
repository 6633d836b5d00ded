#include "radio/n1mm_source.h"

#include "radio/connection_state.h"
#include "radio/frequency_text.h"
#include "radio/n1mm.h"
#include "runtime/errors.h"
#include "runtime/number.h"

#include <algorithm>

namespace radio {

N1mmSource::N1mmSource(form::Form1& form, platform::UdpSockets& sockets)
    : FrequencySource(form::kN1mmLogger, "N1MM Logger", form.lblFreqN1MM, "kHz"), form_(form),
      sockets_(sockets) {}

void N1mmSource::connect() {
    release();
    try {
        wskN1mmLog_ = sockets_.bind(n1mmPort(form_.intPortaN1MM), [this](const std::string& datagram) {
            form_.guard([&] { received(datagram); });
        });
    } catch (const runtime::ObjectError& error) {
        showState(form_, "Error", error.what());
        return;
    }
    showConnected(form_, "Listening");
    form_.lblFreqN1MM.Caption = "00000";
}

void N1mmSource::release() {
    wskN1mmLog_.reset();
    hertz_.reset();
    transmitting_ = false;
}

void N1mmSource::received(const std::string& datagram) {
    form_.lblFreqN1MM.Caption = n1mmKilohertz(datagram);
    hertz_ = n1mmHertz(datagram);
    silentPolls_ = 0;
    transmitting_ = n1mmTransmitting(datagram).value_or(transmitting_);
}

double N1mmSource::silence() const {
    return silentPolls_ * kSecondsPerPoll;
}

double N1mmSource::age() const {
    constexpr double kRepeat = 10; // seconds
    return std::max(silence() - kRepeat, 0.0);
}

bool N1mmSource::hasFrequency() const {
    return runtime::leadingNumber(form_.lblFreqN1MM.Caption.get()) != 0;
}

std::string N1mmSource::key() const {
    return keyOfKilohertz(form_.lblFreqN1MM.Caption.get());
}

} // namespace radio
