#include "ui/heartbeat.h"

namespace ui {

namespace {

constexpr int kBeatMilliseconds = 250;

} // namespace

Heartbeat::Heartbeat(form::Form1& form, std::function<void(bool)> beat)
    : sides_(form), beat_(std::move(beat)) {
    for (form::Timer* timer : sides_.timers())
        timer->observe(this);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { say(); });
    timer_.start(kBeatMilliseconds);
    say();
}

Heartbeat::~Heartbeat() {
    for (form::Timer* timer : sides_.timers())
        timer->observe(nullptr);
}

void Heartbeat::say() {
    said_ = sides_.anyRunning();
    beat_(said_);
}

void Heartbeat::changed(form::Control& /*control*/) {
    if (sides_.anyRunning() != said_) say();
}

} // namespace ui
