#pragma once

#include "config/record_file.h"
#include "engine/side.h"
#include "memory/memory_slots.h"

namespace app {

/// Switches the outputs off once they have been on for a while at the same frequency: coils that hold
/// nothing only heat up.
class AutoOutputsOff {
  public:
    AutoOutputsOff(form::Form1& form, config::RecordFile& file, memory::MemorySlots& slots);

    /// Once for each tick of the polling timer: arms the countdown while nothing moves, ends it while an
    /// engine runs. A change of frequency only keeps it from being armed.
    void arm();
    void tmrAutoOff_Timer();
    void chkAutoCmdOff_Click();
    void hScrCmdOff_Change();

    /// Milliseconds of so many seconds. OverflowError above 32 s.
    static int countdown(form::Int16 seconds) { return (seconds * 1000).value(); }

  private:
    form::Form1& form_;
    config::RecordFile& file_;
    memory::MemorySlots& slots_;
    engine::Sides sides_;
    bool failed_ = false; // the outputs did not go off; not tried again before an engine has run
};

} // namespace app
