#pragma once

#include "form/form1.h"

#include <array>

namespace engine {

/// What is done with a speed too low for a step period, before it is stored.
enum class LowSpeed {
    Kept,           // also 0, which leaves the speed without a period
    ZeroBecomesOne, // a negative one, which only pasting brings, is kept
    BelowOneBecomesOne
};

/// Every deliberate difference between the engines. Their values stand side by side in side.cpp.
struct Differences {
    int motor;                   // number towards the USB board
    int firstOutput;             // the engine's lowest output
    int usbFactor;               // shifts engine A's USB values into this engine's half of the byte
    float rotorEnd;              // degrees at which Satellite Rotor ends a move towards larger positions
    bool rotorHasNoLimit;        // the limit before a step does not hold in Satellite Rotor
    bool roundsEndOfRun;         // the end of run after a step compares the rounded position
    LowSpeed lowFast, lowSlow;   // how an entry of a speed is corrected
    bool takesSlowAtOnce;        // an entry of the slow speed also selects it
    bool takesFractions;         // units per revolution may be typed with a point
    bool keepsTurn;              // an entry of the units recomputes the steps of a turn (dblStepsGiroA)
    bool mustNotRecallBelowZero; // a recall is refused while the engine stands below zero
    bool asksWithEndOfEngineA;   // the question before storing shows the end of engine A's old text
};

/// One of the parameters of an engine: a double-click on the label opens the entry beside it.
struct Parameter {
    form::Label& label;
    form::TextBox& box;
    int record;
};

/// The names of Form1 that are A's or B's.
struct Names {
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
    bool& bolTargetRotor;
    float& sngTargetRotor;
    form::Int16& intSteps;
    float& sngMMGiro;
    form::Int16& intVelAlta;
    form::Int16& intVelBassa;
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
    form::Button& cmdReset;
    form::CheckBox& chkHalfStep;
    Parameter fast;
    Parameter slow;
    Parameter steps;
    Parameter units;
    form::Label& entryNotice;
};

/// One engine.
struct Side : Differences, Names {
    bool running() const { return forward.Enabled || backward.Enabled; }
    form::Timer& timer(int direction) const { return direction == form::kForward ? forward : backward; }
    /// Whether steps in this direction lead to larger positions. With units or steps per revolution below 0
    /// those backward do.
    bool ascends(int direction) const {
        return (direction == form::kForward) == ((sngMMGiro < 0) == (intSteps < 0));
    }
};

Side sideA(form::Form1& form);
Side sideB(form::Form1& form);

/// The two engines of a form.
struct Sides {
    explicit Sides(form::Form1& form) : a(sideA(form)), b(sideB(form)) {}
    Side a;
    Side b;
    bool anyRunning() const { return a.running() || b.running(); }
    /// How long the next step of either is away; the longest time there is while both stand.
    std::chrono::nanoseconds untilStep() const;
    /// The step timers of both.
    std::array<form::Timer*, 4> timers() const { return {&a.forward, &a.backward, &b.forward, &b.backward}; }
};

} // namespace engine
