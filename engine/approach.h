#pragma once

#include "engine/backlash.h"
#include "engine/motion.h"
#include "engine/side.h"

#include <array>
#include <optional>
#include <string>

namespace engine {

/// subStartDaMemA and subStartDaMemB: the moves of a recall in the tuner functions. A short move runs slowly.
/// An engine with backlash always reaches its target from below.
class Approach {
  public:
    Approach(form::Form1& form, Motion& motion);

    /// Runs towards `target`, in user units; a new target replaces the old one. Returns false when the engine
    /// cannot start; the notice gives the reason.
    bool moveTo(const Side& side, float target);
    /// Motion::canMoveTo.
    bool canMoveTo(const Side& side, float target) { return motion_.canMoveTo(side, target); }
    /// Steps from the engine's position to `target`, positive upwards; 0 if the engine cannot step.
    static double stepsTo(const Side& side, float target);

    /// What is left of a move.
    struct Way {
        float target;    // where the move ends, in user units
        double distance; // in user units, there and back where the engine passes its target
        Period time;
    };
    /// Empty if the engine stands or has no target.
    std::optional<Way> way(const Side& side) const;

    /// The backlash of engine 1 and engine 2, in steps.
    void setBacklash(int play1, int play2);
    /// Names an engine that is not known to have reached its position from below, as a text for the user;
    /// empty if both have.
    std::string faultOfPlace() const;

  private:
    struct Engine {
        Backlash backlash;
        std::optional<float> target; // the final target, while the engine runs to a point below it
    };
    Engine& of(const Side& side) { return engines_.at(static_cast<std::size_t>(side.motor - 1)); }
    const Engine& of(const Side& side) const { return engines_.at(static_cast<std::size_t>(side.motor - 1)); }
    bool leg(const Side& side, float target);

    form::Form1& form_;
    Motion& motion_;
    Sides sides_;
    std::array<Engine, 2> engines_;
};

} // namespace engine
