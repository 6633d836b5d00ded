#pragma once

#include "config/record_file.h"
#include "engine/side.h"
#include "memory/memory_slots.h"

namespace app {

/// Switches the outputs off after a delay while no engine moves and the frequency does not change: the coils
/// of a standing motor only heat up.
class AutoOutputsOff {
  public:
    static constexpr int kFirstDelay = 8; // seconds, until the user sets a delay

    AutoOutputsOff(form::Form1& form, config::RecordFile& file, memory::MemorySlots& slots);

    /// Called at each tick of the polling timer. Starts the countdown while no engine runs, and ends it while
    /// an engine runs. A change of frequency only prevents the start of the countdown.
    void arm();
    void tmrAutoOff_Timer();
    void chkAutoCmdOff_Click();
    void hScrCmdOff_Change();

    /// Converts seconds to milliseconds. OverflowError above 32 s.
    static int countdown(form::Int16 seconds) { return (seconds * 1000).value(); }

  private:
    form::Form1& form_;
    config::RecordFile& file_;
    memory::MemorySlots& slots_;
    engine::Sides sides_;
    bool failed_ = false; // switching off failed; tried again only after an engine has run
};

} // namespace app
