#pragma once

#include "engine/approach.h"

#include <array>
#include <string>

namespace engine {

/// A time for the user, rounded up: "4 s", "3 min".
std::string timeText(double seconds);

/// What follows from an engine's parameters: "0.05 mm a step, 100 to 200 steps/s". Names the parameter that
/// is 0 if the engine cannot run; `ok` is false then.
struct StepText {
    std::string text;
    bool ok;
};
StepText stepText(const Side& side);

/// Shows what the engines do: direction, target, the time to go, the end of the range. While the antenna
/// follows, its target never stands still: the direction alone is shown.
class Movement {
  public:
    Movement(form::Form1& form, Motion& motion, const Approach& approach);

    void show();

  private:
    using Place = std::pair<int, float>; // in a function
    struct Engine {
        double whole = 0;            // the way to `target`, in user units
        std::optional<float> target; // of the move that is shown
        std::optional<Place> end;    // of the range
    };
    Place place(const Side& side) const;
    void show(const Side& side);

    form::Form1& form_;
    const Approach& approach_;
    Sides sides_;
    std::array<Engine, 2> engines_;
};

} // namespace engine
