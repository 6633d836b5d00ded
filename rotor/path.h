#pragma once

#include "rotor/direction.h"

#include <chrono>
#include <optional>

namespace rotor {

/// What the antenna can do.
struct Machine {
    Ranges ranges;
    double azimuthSpeed = 1, elevationSpeed = 1; // degrees per second at the fast speeds
};

/// Which of the antenna's positions for a target: azimuth may be taken 360 degrees further on, and an antenna
/// that turns over the top reaches the target from behind. One is taken that holds the rest of the pass, and
/// kept through it. Time comes from outside.
class Path {
  public:
    using Time = std::chrono::milliseconds;

    static constexpr double kDriftKnown = 2;   // degrees of arc
    static constexpr double kPassBegins = 5;   // degrees of elevation; below, the choice is still open
    static constexpr double kOtherTarget = 10; // degrees of arc at once: another satellite
    static constexpr double kPass = 180;       // degrees of azimuth that a pass takes at most
    static constexpr double kBeyondEnd = 3;    // degrees beyond the range's end, for so long:
    static constexpr Time kBeyondTime{2000};
    static constexpr double kNearZenith = 80; // degrees of elevation; above, azimuth leaps

    /// What led to the present choice.
    enum class Reason { kNone, kFirst, kRising, kDrift, kOtherTarget, kZenith, kTurnRound };

    /// The next target is the first one: following begins, or goes on after silence.
    void reset();
    /// The target has set below what is followed: the next pass is chosen for anew.
    void endPass() { risen_ = false; }
    /// A whole new target, while the antenna stands at `antenna`.
    void take(const Direction& target, const Direction& antenna, const Machine& machine);
    /// So much time has gone by since the last call. True when the antenna has to turn round.
    bool pass(Time time, const Direction& antenna, const Machine& machine);

    bool any() const { return target_.has_value(); }
    /// Where the antenna is to stand, inside the ranges. There is a target.
    Direction aim(const Ranges& ranges) const;
    bool flipped() const { return way_.flipped; }
    /// The antenna waits at an end of its range, the target being beyond.
    bool waiting(const Ranges& ranges) const;
    /// The direction in which azimuth drifts, -1, 0 or 1; nothing until that is known.
    const std::optional<int>& drift() const { return drift_; }
    /// Of the last choice.
    Reason reason() const { return reason_; }

  private:
    /// A position is the target's azimuth and `turn`; flipped, its elevation counts from the other side.
    struct Way {
        double turn = 0; // degrees: a multiple of 360, flipped of 360 and 180 more
        bool flipped = false;
        bool operator==(const Way&) const = default;
    };
    struct Worth {
        double outside; // degrees from the range; 0: reached
        double holds;   // degrees of the rest of the pass
        double seconds; // until the antenna is there
    };

    Direction position(const Way& way) const;
    Worth worth(const Way& way, const Direction& antenna, const Machine& machine) const;
    void choose(const Direction& antenna, const Machine& machine, Reason reason);
    void crossZenith(const Direction& antenna, const Machine& machine);
    double beyondEnd(const Ranges& ranges) const;
    /// The azimuth, counted on through north from the target's.
    double continued(double azimuth, const Ranges& ranges) const;

    std::optional<Direction> target_; // azimuth counts on through north
    Direction driftFrom_;
    std::optional<int> drift_;
    bool risen_ = false; // above kPassBegins in this pass
    Way way_;
    Time beyond_{};
    Reason reason_ = Reason::kNone;
};

} // namespace rotor
