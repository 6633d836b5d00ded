#pragma once

#include "form/form1.h"
#include "memory/memory_slots.h"

#include <functional>

namespace app {

/// The three functions: the same two engines under other names and units.
class Functions {
  public:
    Functions(form::Form1& form, memory::MemorySlots& slots, engine::Motion& motion);

    /// Told the function that has been switched on.
    std::function<void(int)> onChange;

    void mnuCoilTuner_Click() { choose(form::kCoilTuner); }
    void mnuAmpli_Click() { choose(form::kTuneAndLoad); }
    void mnuSat_Click() { choose(form::kSatelliteRotor); }

    /// Switches on the function of this number, which may be on already; any other value than 1, 2 and 3
    /// leaves the window without one.
    void switchOn(int function);
    /// As the status bar shows it.
    static std::string nameOf(int function);

  private:
    struct Texts;
    static const Texts& textsOf(int function);
    void choose(int function);
    void showTexts(const Texts& texts);
    void showFrames(bool rotor);

    form::Form1& form_;
    memory::MemorySlots& slots_;
    engine::Motion& motion_;
};

} // namespace app
