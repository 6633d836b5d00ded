#pragma once

#include "engine/motion.h"
#include "engine/output_ports.h"
#include "engine/side.h"
#include "engine/step_rate.h"

#include <functional>

namespace engine {

/// Beyond this many user units, either way, an engine is at the end of its run.
constexpr int kEndOfRun = 999;

/// The step timers: each tick puts the next coil pattern out and moves the position by one step. While the
/// outputs have not taken an engine's last pattern, its ticks pass by, so that the rate follows the device.
class Stepper {
  public:
    Stepper(form::Form1& form, form::Boxes& boxes, OutputPorts& outputs, Motion& motion);

    void Timer1_Timer() { tick(sides_.a, form::kForward); }
    void Timer2_Timer() { tick(sides_.a, form::kBackward); }
    void Timer3_Timer() { tick(sides_.b, form::kBackward); }
    void Timer4_Timer() { tick(sides_.b, form::kForward); }

    /// Once a second while the USB box is ticked: finds a board that is gone though no engine runs, and shows
    /// the rate that is left where a slow one holds the engines back.
    void tmrUsb_Timer();

    void chkHalfStep_Click() { changeStepMode(sides_.a); }
    void chkHalfStepB_Click() { changeStepMode(sides_.b); }

    /// Caption, mode and multiplier as the step mode box stands.
    static void applyStepMode(const Side& side);

    /// In Satellite Rotor: whether the machine must not turn on towards larger positions (`up`), or smaller
    /// ones. Asked before each step.
    std::function<bool(const Side& side, bool up)> isBlocked;

  private:
    void tick(const Side& side, int direction);
    bool atLimit(const Side& side, int direction) const;
    /// Writes phase `index` of a sequence and moves the position. False when the sequence has no such phase.
    template <class Sequence>
    bool writePhase(const Side& side, int direction, const Sequence& sequence, form::Int16 index);
    /// subApos, subAneg, subBpos and subBneg in one: once for each step that was made.
    void move(const Side& side, int direction);
    /// Whether the step that was made has reached the end of run.
    bool atEndOfRun(const Side& side, int direction) const;
    /// Whether it has reached or passed the target.
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
