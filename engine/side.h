#pragma once

#include "form/form1.h"

#include <array>
#include <string>

namespace engine {

/// How a speed entry that is too low for a step period is corrected before it is stored.
enum class LowSpeed {
    Kept,           // 0 is kept too; the speed then has no period
    ZeroBecomesOne, // negative values are kept; they come only from pasting
    BelowOneBecomesOne
};

/// Every deliberate difference between the engines. The values are in side.cpp, side by side.
struct Differences {
    int motor;                   // engine number in calls for the USB board
    int firstOutput;             // the engine's lowest output
    int usbFactor;               // engine A's USB value times this is the engine's USB value
    float rotorEnd;              // degrees at which a move towards larger positions stops in Satellite Rotor
    bool rotorHasNoLimit;        // the limit check before a step is skipped in Satellite Rotor
    bool roundsEndOfRun;         // the end-of-run check after a step uses the rounded position
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

/// References to the members of Form1 that belong to engine A or engine B.
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
    std::int64_t& halfSteps;
    bool& bolVelAlta;
    bool& bolManual;

    // Controls.
    form::Timer& forward;
    form::Timer& backward;
    std::array<form::Shape*, 4> lamps;
    form::Shape& shpDisplay;
    form::Label& lblPos;
    form::Label& lblPosRotor;
    form::Label& lblRx; // the target received, in Satellite Rotor
    form::Label& lblUso;
    form::Label& lblEngine;
    form::Button& cmdRunForward;
    form::Button& cmdRunBackward;
    form::Button& cmdJogForward;
    form::Button& cmdJogBackward;
    form::Button& cmdStop;
    form::Button& cmdFast;
    form::Button& cmdSlow;
    form::Button& cmdReset;
    form::CheckBox& chkHalfStep;
    form::ComboBox& cmbJog;
    form::Label& otherSpeed;
    Parameter fast;
    Parameter slow;
    Parameter steps;
    Parameter units;
    form::Notice& entryNotice;
    form::Label& lblUnit;
    form::Label& lblTarget;
    form::Label& lblToGo;
    form::Bar& bar;
    form::Label& lblStep;
};

/// One engine.
struct Side : Differences, Names {
    bool running() const { return forward.Enabled || backward.Enabled; }
    /// The unit of the position: "mm".
    std::string unit() const;
    form::Timer& timer(int direction) const { return direction == form::kForward ? forward : backward; }
    /// Whether steps in this direction lead to larger positions. If units or steps per revolution are
    /// negative, backward steps do.
    bool ascends(int direction) const {
        return (direction == form::kForward) == ((sngMMGiro < 0) == (intSteps < 0));
    }
};

/// The size of one step in user units, always positive; 0 if the engine cannot step.
double stepDistance(const Side& side);

/// Steps per second at `period` milliseconds a step, rounded. Precondition: `period` is positive.
constexpr int speedOf(int period) {
    return (1000 + period / 2) / period;
}

Side sideA(form::Form1& form);
Side sideB(form::Form1& form);

/// The two engines of a form.
struct Sides {
    explicit Sides(form::Form1& form) : a(sideA(form)), b(sideB(form)) {}
    Side a;
    Side b;
    bool anyRunning() const { return a.running() || b.running(); }
    /// The time until the next step of either engine; the maximum of the type while both stand.
    std::chrono::nanoseconds untilStep() const;
    /// The step timers of both.
    std::array<form::Timer*, 4> timers() const { return {&a.forward, &a.backward, &b.forward, &b.backward}; }
};

} // namespace engine
