#include "ui/heartbeat.h"

namespace ui {

namespace {

constexpr int kBeatMilliseconds = 250;

} // namespace

Heartbeat::Heartbeat(form::Form1& form, std::function<void(bool)> beat)
    : form_(form), beat_(std::move(beat)) {
    for (form::Timer* timer : {&form_.Timer1, &form_.Timer2, &form_.Timer3, &form_.Timer4})
        timer->observe(this);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { say(); });
    timer_.start(kBeatMilliseconds);
    say();
}

Heartbeat::~Heartbeat() {
    for (form::Timer* timer : {&form_.Timer1, &form_.Timer2, &form_.Timer3, &form_.Timer4})
        timer->observe(nullptr);
}

bool Heartbeat::engineRuns() const {
    return form_.Timer1.Enabled || form_.Timer2.Enabled || form_.Timer3.Enabled || form_.Timer4.Enabled;
}

void Heartbeat::say() {
    said_ = engineRuns();
    beat_(said_);
}

void Heartbeat::changed(form::Control& /*control*/) {
    if (engineRuns() != said_) say();
}

} // namespace ui
