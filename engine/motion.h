#pragma once

#include "engine/side.h"
#include "form/boxes.h"

#include <functional>

namespace engine {

/// The commands that start, steer and stop the engines. They set direction states and step timers and never
/// write an output.
class Motion {
  public:
    Motion(form::Form1& form, form::Boxes& boxes);

    void cmdAv_Click() { run(sides_.a, form::kForward); }
    void cmdInd_Click() { run(sides_.a, form::kBackward); }
    void cmdAvB_Click() { run(sides_.b, form::kForward); }
    void cmdIndB_Click() { run(sides_.b, form::kBackward); }

    void cmdAlta_Click() { selectFast(sides_.a); }
    void cmdBassa_Click() { selectSlow(sides_.a); }
    void cmdAltaB_Click() { selectFast(sides_.b); }
    void cmdBassaB_Click() { selectSlow(sides_.b); }

    void cmdAlt_Click() { stop(sides_.a); }
    void cmdAltB_Click() { stop(sides_.b); }

    /// A jog that a box or a lost focus has cut off: as if its button had been released.
    void releaseJogs();

    /// A jog begins and fast memory store is off: no memory is selected any longer.
    std::function<void()> subResetPressedMem;

  private:
    void run(const Side& side, int direction);
    void jogDown(const Side& side, int direction);
    void jogUp(const Side& side);
    void selectFast(const Side& side);
    void selectSlow(const Side& side);
    void stop(const Side& side);
    void reset(const Side& side);
    /// cmdOff is disabled exactly while an engine runs.
    void updateOff();
    bool isRotor() const { return form_.intFunzione == form::kSatelliteRotor; }

    form::Form1& form_;
    form::Boxes& boxes_;
    Sides sides_;
    bool jogHeldA_ = false, jogHeldB_ = false;
    bool& jogHeld(const Side& side) { return &side == &sides_.a ? jogHeldA_ : jogHeldB_; }
};

} // namespace engine
