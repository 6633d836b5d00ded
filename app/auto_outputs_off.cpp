#include "app/auto_outputs_off.h"

#include "config/records.h"

namespace app {

AutoOutputsOff::AutoOutputsOff(form::Form1& form, config::RecordFile& file, memory::MemorySlots& slots)
    : form_(form), file_(file), slots_(slots), sides_(form) {
    form_.tmrAutoOff.Tick.attach([this] { tmrAutoOff_Timer(); });
    form_.chkAutoCmdOff.Click.attach([this] { chkAutoCmdOff_Click(); });
    form_.hScrCmdOff.Change.attach([this] { hScrCmdOff_Change(); });
}

void AutoOutputsOff::arm() {
    if (!form_.cmdOff.Enabled) {
        form_.tmrAutoOff.Enabled = false;
        failed_ = false;
    } else if (!form_.bolFreqChanged && form_.bolAutoCmdOff && !failed_) {
        form_.tmrAutoOff.Enabled = true;
    }
}

void AutoOutputsOff::tmrAutoOff_Timer() {
    if (form_.intFunzione == form::kSatelliteRotor) return;
    form_.tmrAutoOff.Enabled = false;
    // If an engine has started since the last poll, its coils stay on.
    if (sides_.anyRunning()) return;
    const bool energised = form_.shpCoils.FillColor == form::kRed;
    failed_ = true;
    form_.cmdOff.Click.raise();
    failed_ = false;
    form_.bolAutoOffFire = true;
    if (!form_.chkAutoMemOnOff.ticked() && form_.chkFastMemory.ticked()) slots_.fastStore(energised);
}

void AutoOutputsOff::chkAutoCmdOff_Click() {
    form_.bolAutoCmdOff = form_.chkAutoCmdOff.ticked();
    // Without a delay the timer would never fire.
    if (form_.bolAutoCmdOff && form_.intAutoCmdOffSec == 0) form_.hScrCmdOff.set(kFirstDelay);
}

void AutoOutputsOff::hScrCmdOff_Change() {
    form_.lblAutoCmdOff.Caption = std::to_string(form_.hScrCmdOff.Value.get());
    form_.intAutoCmdOffSec = form_.hScrCmdOff.Value.get();
    form_.tmrAutoOff.Interval = countdown(form_.intAutoCmdOffSec);
    file_.write({config::integerRecord(config::record::kAutoOffSeconds, form_.intAutoCmdOffSec)});
}

} // namespace app
