#include "app/activity.h"

#include "engine/movement.h"

namespace app {

Activity::Activity(form::Form1& form, platform::Timers& timers)
    : form_(form), sides_(form), tmrActivity_(form, "tmrActivity", timers, kMilliseconds) {
    tmrActivity_.Tick.attach([this] { showAll(); });
}

void Activity::look() {
    const bool runs = sides_.anyRunning();
    // A step tells nothing that the timer does not.
    if (runs && tmrActivity_.Enabled) return;
    tmrActivity_.Enabled = runs;
    showAll();
}

void Activity::showAll() {
    showOutputs();
    if (show) show();
}

void Activity::showOutputs() {
    const bool counts = form_.tmrAutoOff.Enabled && form_.tmrAutoOff.Interval > 0 &&
                        form_.shpCoils.FillColor != form::kBlack &&
                        form_.intFunzione != form::kSatelliteRotor;
    form_.lblOffIn.Caption =
        counts ? "off in " +
                     engine::timeText(std::chrono::duration<double>(form_.tmrAutoOff.untilTick()).count())
               : std::string();
}

} // namespace app
