#pragma once

#include "form/form1.h"
#include "memory/memory_slots.h"

#include <functional>

namespace app {

/// The three functions: the same two engines with different names and units.
class Functions {
  public:
    Functions(form::Form1& form, memory::MemorySlots& slots, engine::Motion& motion);

    /// Called with the function that has been switched on.
    std::function<void(int)> onChange;

    /// Called before the function that the user has chosen is switched on.
    std::function<void(int)> onChoice;

    void mnuCoilTuner_Click() { choose(form::kCoilTuner); }
    void mnuAmpli_Click() { choose(form::kTuneAndLoad); }
    void mnuSat_Click() { choose(form::kSatelliteRotor); }

    /// Switches on the function with this number, even if it is already on. After any value but 1, 2 and 3 no
    /// function is on.
    void switchOn(int function);
    /// The function's name in the status bar.
    static std::string nameOf(int function);

  private:
    struct Texts;
    static const Texts& textsOf(int function);
    void choose(int function);
    void showTexts(const Texts& texts);
    void showFrames(bool rotor);
    /// Whether an engine has a parameter.
    bool isSetUp() const;

    form::Form1& form_;
    memory::MemorySlots& slots_;
    engine::Motion& motion_;
};

} // namespace app
