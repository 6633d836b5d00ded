#pragma once

#include "engine/backlash.h"
#include "engine/motion.h"
#include "engine/side.h"

#include <array>
#include <optional>
#include <string>

namespace engine {

/// subStartDaMemA and subStartDaMemB: moves to a position as recalls make them in the tuner functions, slowly
/// where the way is short, and always from below where an engine has backlash.
class Approach {
  public:
    Approach(form::Form1& form, Motion& motion);

    /// Runs towards `target`, in user units; a new target takes the place of one that is on its way. False
    /// when the engine cannot start: the notice says why.
    bool moveTo(const Side& side, float target);
    /// Steps from where the engine stands to a position, above 0 where the position rises; 0 where one step
    /// moves nothing.
    static double stepsTo(const Side& side, float target);

    /// Steps of play of engine 1 and 2.
    void setBacklash(int play1, int play2);
    /// Why a place was not reached from below, in words for the user; empty when both were.
    std::string faultOfPlace() const;

  private:
    struct Engine {
        Backlash backlash;
        std::optional<float> target; // behind the dip that is under way
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
