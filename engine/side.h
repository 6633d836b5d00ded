#pragma once

#include "form/form1.h"

#include <array>

namespace engine {

/// One engine: the names of Form1 that are A's or B's, and every deliberate difference between the two.
struct Side {
    // Differences.
    int motor;            // number towards the USB board
    int firstOutput;      // the engine's lowest output
    int usbFactor;        // shifts engine A's USB values into this engine's half of the byte
    bool rotorHasNoLimit; // the limit before a step does not hold in Satellite Rotor
    bool roundsEndOfRun;  // the end of run after a step compares the rounded position
    float rotorEnd;       // degrees at which Satellite Rotor ends a forward move

    // State.
    float& sngPos;      // user units
    float& sngPosRotor; // degrees
    bool& bolHalfStep;
    form::Byte& bytMolt;
    form::Int16& intDir;
    form::Int16& intFase;
    form::Int16& intFaseHalf;
    form::Int16& intUltFase;
    form::Int16& intUltFaseHalf;
    bool& bolMem;
    float& sngTarget;
    form::Int16& intSteps;
    float& sngMMGiro;
    form::Int16& intTickAlta;
    form::Int16& intTickBassa;
    form::Int16& intVelRot;
    bool& bolVelAlta;
    bool& bolManual;

    // Controls.
    form::Timer& forward;
    form::Timer& backward;
    std::array<form::Shape*, 4> lamps;
    form::Label& lblPos;
    form::Label& lblPosRotor;
    form::Label& lblUso;
    form::Label& lblEngine;
    form::Button& cmdRunForward;
    form::Button& cmdRunBackward;
    form::Button& cmdJogForward;
    form::Button& cmdJogBackward;
    form::Button& cmdFast;
    form::Button& cmdSlow;
    form::Button& cmdStop;
    form::Button& cmdReset;
    form::CheckBox& chkHalfStep;
    form::TextBox& txtSlow;

    bool running() const { return forward.Enabled || backward.Enabled; }
    form::Timer& timer(int direction) const { return direction == form::kForward ? forward : backward; }
};

Side sideA(form::Form1& form);
Side sideB(form::Form1& form);

/// The two engines of a form.
struct Sides {
    explicit Sides(form::Form1& form) : a(sideA(form)), b(sideB(form)) {}
    Side a;
    Side b;
    bool anyRunning() const { return a.running() || b.running(); }
    /// The step timers of both.
    std::array<form::Timer*, 4> timers() const { return {&a.forward, &a.backward, &b.forward, &b.backward}; }
};

} // namespace engine
