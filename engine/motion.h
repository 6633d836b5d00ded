#pragma once

#include "engine/ramp_drive.h"
#include "engine/side.h"
#include "form/boxes.h"

#include <functional>
#include <optional>
#include <utility>

namespace engine {

/// The commands that start, steer and stop the engines. Buttons, memories and everything else that moves an
/// engine call them. They set direction states and step timers and never write an output. A `side` is one of
/// form's two engines.
class Motion {
  public:
    Motion(form::Form1& form, form::Boxes& boxes);

    /// Runs in `direction` (kForward, kBackward) until a stop or the end of run. A target set by a recall
    /// (bolMem) still stops the engine. Returns false when the engine cannot start: the engine stands, and
    /// the notice gives the reason.
    bool run(const Side& side, int direction);
    /// Runs towards `target` and stops on the step that reaches or passes it: in user units, or in degrees in
    /// Satellite Rotor. An engine that is running to another target changes to this target without a stop. An
    /// engine that is already at the target does not start. The move uses the last speed of its direction:
    /// call fast or slow next. Returns false like `run`.
    bool moveTo(const Side& side, float target);
    /// Begins a jog in `direction`: the engine runs until its release, or moves by the increment that is
    /// chosen. A further increment in the same direction is added to the one under way. Returns false like
    /// `run`.
    bool jog(const Side& side, int direction);
    /// Moves by `distance` (positive), rounded to whole steps, in units of the position. Returns false like
    /// `run`.
    bool moveBy(const Side& side, int direction, double distance);
    /// Whether the engine is moving by an increment, which ends by itself.
    bool movesByIncrement(const Side& side) { return own(side).goal.has_value(); }
    /// Whether moveTo can start or has nothing to do; if false, the notice gives the reason.
    bool canMoveTo(const Side& side, float target);
    /// Why the engine cannot start, as words for the notice; empty if it can.
    std::string whyNotStart(const Side& side) const;
    /// Stops at once, without a ramp. The outputs keep the last pattern.
    void stop(const Side& side);
    /// Ends a jog or a move: with a ramp the engine slows down first.
    void release(const Side& side);
    /// The engine has made a step that reaches or passes its target. If the ramp is still above the slow
    /// speed, the engine passes the target. Outside Satellite Rotor it then returns to the target.
    void arrive(const Side& side);
    void stopBoth();
    /// Selects a speed for this move, or for the next move in the same direction. If the speed has no period,
    /// the other speed is used.
    void fast(const Side& side) { selectSpeed(side, true); }
    void slow(const Side& side) { selectSpeed(side, false); }

    void cmdAv_Click() { run(sides_.a, form::kForward); }
    void cmdInd_Click() { run(sides_.a, form::kBackward); }
    void cmdAvB_Click() { run(sides_.b, form::kForward); }
    void cmdIndB_Click() { run(sides_.b, form::kBackward); }

    void cmdAlta_Click() { userSpeed(sides_.a, true); }
    void cmdBassa_Click() { userSpeed(sides_.a, false); }
    void cmdAltaB_Click() { userSpeed(sides_.b, true); }
    void cmdBassaB_Click() { userSpeed(sides_.b, false); }

    void cmdAlt_Click() { userStop(sides_.a); }
    void cmdAltB_Click() { userStop(sides_.b); }

    /// The engine has made a step that is neither the end of run nor the target.
    void stepped(const Side& side);

    /// Whether the user has released a jog in Satellite Rotor since the last call, with no command after the
    /// release.
    bool takeReleased(const Side& side) { return std::exchange(own(side).released, false); }

    /// The time until the engine reaches its target; empty if it stands or has no target.
    std::optional<Period> timeToGo(const Side& side) const {
        return (side.motor == sides_.a.motor ? ownA_ : ownB_).ramp.timeToGo();
    }
    /// The engine has reached an end of its range.
    void endOfRange(const Side& side);

    /// Ends held jogs as if their buttons had been released: a box or a lost focus hides the release.
    void releaseJogs();

    /// The reason why no engine may start now, for the notice; empty if there is none.
    std::function<std::string()> notReady;
    /// Called to deselect the memory, when a jog begins while fast memory store is off.
    std::function<void()> subResetPressedMem;
    /// Called after each step of an engine in `direction`.
    std::function<void(const Side& side, int direction)> onStep;
    /// Called after every stop of an engine, by the user or by the program.
    std::function<void(const Side& side)> onStop;
    /// Called before an engine stops at its target. Returns what to do right after the stop; empty for
    /// nothing.
    std::function<std::function<void()>(const Side& side)> onArrival;
    /// Called when an engine has passed the target of a recall, instead of a direct return to the target.
    std::function<void(const Side& side)> onPassed;
    /// Called when an engine has stopped at an end of its range.
    std::function<void(const Side& side)> onEndOfRange;
    /// Called when the user has declared a position to be 0 by Reset; `before` is the old value.
    std::function<void(const Side& side, float before)> onReset;
    /// Called after the user has stopped an engine with Stop; not after a stop by the program.
    std::function<void()> onUserStop;

  private:
    bool canStart(const Side& side);
    /// Every move begins here. If `recall` is true, the phase indexes are kept.
    bool start(const Side& side, int direction, bool recall = false);
    /// The direction towards `target`, or 0 if the engine is at the target.
    int directionTo(const Side& side, float target) const;
    void userStop(const Side& side);
    void jogDown(const Side& side, int direction);
    void jogUp(const Side& side);
    void selectSpeed(const Side& side, bool fast);
    /// The same, and says so if the engine has no such speed.
    void userSpeed(const Side& side, bool fast);
    void sayMissing(const Side& side, bool fast);
    /// Names the speed of the direction that Fast and Slow do not act on, if it is another one.
    static void showOtherSpeed(const Side& side);
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
        bool released = false;        // a jog was released in Satellite Rotor
        std::optional<double> goal{}; // of the increment under way
    };
    Own ownA_, ownB_;
    /// `side` may be any Side object of the engine.
    Own& own(const Side& side) { return side.motor == sides_.a.motor ? ownA_ : ownB_; }
};

} // namespace engine
