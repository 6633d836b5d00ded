#pragma once

#include "engine/motion.h"
#include "engine/output_ports.h"
#include "engine/side.h"
#include "engine/step_rate.h"

#include <functional>

namespace engine {

/// The end of run: this many user units in either direction.
constexpr int kEndOfRun = 999;

/// Handles the ticks of the step timers: each tick writes the next coil pattern and moves the position by one
/// step. Until the outputs have taken an engine's last pattern, its ticks make no step, so the step rate
/// follows the device.
class Stepper {
  public:
    Stepper(form::Form1& form, form::Boxes& boxes, OutputPorts& outputs, Motion& motion);

    void Timer1_Timer() { tick(sides_.a, form::kForward); }
    void Timer2_Timer() { tick(sides_.a, form::kBackward); }
    void Timer3_Timer() { tick(sides_.b, form::kBackward); }
    void Timer4_Timer() { tick(sides_.b, form::kForward); }

    /// Runs once a second: notices a lost device even if no engine runs, and shows the real step rate if a
    /// slow device limits it.
    void tmrOutputs_Timer();

    void chkHalfStep_Click() { changeStepMode(sides_.a); }
    void chkHalfStepB_Click() { changeStepMode(sides_.b); }

    /// Sets caption, mode and multiplier from the step mode box.
    static void applyStepMode(const Side& side);

    /// In Satellite Rotor, called before each step: whether the engine must not move towards larger positions
    /// (`up`) or smaller positions (not `up`).
    std::function<bool(const Side& side, bool up)> isBlocked;
    /// Called once a second to look after the printer port; throws when the port has failed.
    std::function<void()> lookAtPort;

  private:
    void tick(const Side& side, int direction);
    bool atLimit(const Side& side, int direction) const;
    /// Writes phase `index` of a sequence and moves the position. False when the sequence has no such phase.
    template <class Sequence>
    bool writePhase(const Side& side, int direction, const Sequence& sequence, form::Int16 index);
    /// subApos, subAneg, subBpos and subBneg in one: called once for each step made.
    void move(const Side& side, int direction);
    /// Whether the step has reached the end of run.
    bool atEndOfRun(const Side& side, int direction) const;
    /// Whether the step has reached or passed the target.
    bool atTarget(const Side& side, int direction) const;
    void changeStepMode(const Side& side);
    bool isRotor() const { return form_.intFunzione == form::kSatelliteRotor; }

    form::Form1& form_;
    form::Boxes& boxes_;
    OutputPorts& outputs_;
    Motion& motion_;
    Sides sides_;
    StepRate rate_;
};

} // namespace engine
