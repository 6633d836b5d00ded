#pragma once

#include "form/engine_panel.h"
#include "form/memory_panel.h"
#include "form/radio_panel.h"
#include "form/rotor_panel.h"
#include "form/shell_panel.h"

namespace form {

/// The main window's state: fields and controls under their own names, no behaviour.
struct Form1 : Form, EnginePanel, MemoryPanel, RadioPanel, RotorPanel, ShellPanel {
    Form1(platform::Timers& timers, platform::DdeLinks& links)
        : Form("Form1"), EnginePanel(*this, timers), MemoryPanel(*this, timers), RadioPanel(*this, links),
          RotorPanel(*this, timers, links), ShellPanel(*this, timers) {
        Caption = "Twinstep";
    }
};

} // namespace form
