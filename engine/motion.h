#pragma once

#include "engine/ramp_drive.h"
#include "engine/side.h"
#include "form/boxes.h"

#include <functional>
#include <utility>

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
    /// A held jog button or key has been let go, or a move is to end: with a ramp the engine slows down
    /// first.
    void release(const Side& side);
    /// The engine has made a step that reaches or passes its target. Where the ramp is not down at slow yet
    /// the target is passed and, outside Satellite Rotor, come back to.
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

    /// A step has been made that ends nothing.
    void stepped(const Side& side);

    /// Whether a jog of the engine has been released in Satellite Rotor since the last call, and no command
    /// has come after it.
    bool takeReleased(const Side& side) { return std::exchange(own(side).released, false); }

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
    /// Every move begins here. A recall keeps the phase indexes.
    bool start(const Side& side, int direction, bool recall = false);
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
    /// What belongs to one engine.
    struct Own {
        RampDrive ramp;
        bool jogHeld = false;
        bool released = false; // a jog, in Satellite Rotor
    };
    Own ownA_, ownB_;
    /// Any Side of the same engine will do.
    Own& own(const Side& side) { return side.motor == sides_.a.motor ? ownA_ : ownB_; }
};

} // namespace engine
