#pragma once

#include "engine/side.h"
#include "form/boxes.h"

#include <functional>

namespace engine {

/// The commands that start, steer and stop the engines, for buttons, memories and all else that moves one.
/// They set direction states and step timers and never write an output. A `side` is one of form's two
/// engines.
class Motion {
  public:
    Motion(form::Form1& form, form::Boxes& boxes);

    /// Runs in `direction` (kForward, kBackward) until a stop or the end of run; a target that a recall has
    /// set (bolMem) still holds. False when the engine cannot start: the notice says why, and it stands.
    bool run(const Side& side, int direction);
    /// Runs towards `target` and stops on the step that reaches or passes it: in user units, or in degrees in
    /// Satellite Rotor. An engine on its way to another target turns to this one without a stop; one that is
    /// there does not start. The speed is the last of its direction: call fast or slow next. False as with
    /// `run`.
    bool moveTo(const Side& side, float target);
    /// Whether moveTo would start, or has nothing to do; if not, the notice says why.
    bool canMoveTo(const Side& side, float target);
    /// At once. The outputs keep the last pattern.
    void stop(const Side& side);
    /// A held jog button or key has been let go.
    void release(const Side& side) { stop(side); }
    /// The engine has made the step that reaches its target.
    void arrive(const Side& side);
    void stopBoth();
    /// Selects a speed, for this move or the next in the same direction. A speed without a period gives way
    /// to the other one.
    void fast(const Side& side) { selectSpeed(side, true); }
    void slow(const Side& side) { selectSpeed(side, false); }

    void cmdAv_Click() { run(sides_.a, form::kForward); }
    void cmdInd_Click() { run(sides_.a, form::kBackward); }
    void cmdAvB_Click() { run(sides_.b, form::kForward); }
    void cmdIndB_Click() { run(sides_.b, form::kBackward); }

    void cmdAlta_Click() { fast(sides_.a); }
    void cmdBassa_Click() { slow(sides_.a); }
    void cmdAltaB_Click() { fast(sides_.b); }
    void cmdBassaB_Click() { slow(sides_.b); }

    void cmdAlt_Click() { userStop(sides_.a); }
    void cmdAltB_Click() { userStop(sides_.b); }

    /// A jog that a box or a lost focus has cut off: as if its button had been released.
    void releaseJogs();

    /// A jog begins and fast memory store is off: no memory is selected any longer.
    std::function<void()> subResetPressedMem;
    /// An engine has made a step in `direction`.
    std::function<void(const Side& side, int direction)> onStep;
    /// An engine was stopped, by whomever.
    std::function<void(const Side& side)> onStop;
    /// Asked before an engine stops at its target: what is to follow at once; empty where it is to stand.
    std::function<std::function<void()>(const Side& side)> onArrival;
    /// The user has pressed Stop: the engine stands. No stop by the program comes here.
    std::function<void()> onUserStop;

  private:
    bool canStart(const Side& side);
    /// Every move begins here.
    bool start(const Side& side, int direction);
    /// The direction towards `target`, or 0 where the engine stands there.
    int directionTo(const Side& side, float target) const;
    void userStop(const Side& side);
    void jogDown(const Side& side, int direction);
    void jogUp(const Side& side);
    void selectSpeed(const Side& side, bool fast);
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
