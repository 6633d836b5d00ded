#pragma once

#include "form/engine_panel.h"
#include "form/memory_panel.h"
#include "form/radio_panel.h"
#include "form/rotor_panel.h"
#include "form/shell_panel.h"
#include "form/table_panel.h"

namespace form {

/// The main window's state: fields and controls under their own names, no behaviour.
struct Form1 : Form, EnginePanel, MemoryPanel, RadioPanel, RotorPanel, ShellPanel, TablePanel {
    /// A letter 'A' to 'Z' goes down or up while the main window has the keyboard; or it loses the keyboard.
    std::function<void(char letter, bool shift)> onLetterDown;
    std::function<void(char letter)> onLetterUp;
    std::function<void()> onKeyboardLost;
    /// Insert: the position now goes into the frequency table.
    std::function<void()> onAddPosition;

    Form1(platform::Timers& timers, platform::DdeLinks& links)
        : Form("Form1"), EnginePanel(*this, timers), MemoryPanel(*this, timers), RadioPanel(*this, links),
          RotorPanel(*this, timers, links), ShellPanel(*this, timers), TablePanel(static_cast<Form&>(*this)) {
        Caption = "Twinstep";
    }
};

} // namespace form
