#pragma once

#include "rotor/direction.h"

#include <chrono>
#include <optional>

namespace rotor {

/// The ranges and speeds of the rotator.
struct Machine {
    Ranges ranges;
    double azimuthSpeed = 1, elevationSpeed = 1; // degrees per second at the fast speeds
};

/// Chooses one of the positions in which the antenna points at the target. There may be several: azimuth plus
/// or minus 360 degrees, and flipped positions over the zenith. Path prefers the position from which the rest
/// of the pass can be followed, and keeps it through the pass. The caller passes the time in.
class Path {
  public:
    using Time = std::chrono::milliseconds;

    static constexpr double kDriftKnown = 2;   // degrees of arc
    static constexpr double kPassBegins = 5;   // degrees of elevation; below, the choice is still open
    static constexpr double kOtherTarget = 10; // degrees of arc between two targets: another satellite
    static constexpr double kPass = 180;       // the largest change of azimuth in a pass, in degrees
    static constexpr double kBeyondEnd = 3;    // degrees beyond the end of the range, before a turn round
    static constexpr Time kBeyondTime{2000};
    static constexpr double kNearZenith = 80; // degrees of elevation; above, azimuth changes fast
    // Limits that the jitter of a source must not reach, in degrees.
    static constexpr double kDrifts = 0.5;   // of azimuth; a smaller change is no drift
    static constexpr double kRises = 1;      // of elevation, before the target counts as rising or setting
    static constexpr double kHoldsMore = 10; // of azimuth; a new choice while rising must gain this much

    /// Call when following begins, or goes on after silence: forgets the previous targets.
    void reset();
    /// The target has set: the next pass gets a new choice.
    void endPass();
    /// Takes a new complete target; `antenna` is the antenna's present position.
    void take(const Direction& target, const Direction& antenna, const Machine& machine);
    /// `time` is the time since the last call. Returns true when the antenna must turn round.
    bool pass(Time time, const Direction& antenna, const Machine& machine);

    bool any() const { return target_.has_value(); }
    /// The antenna's position for the target, limited to the ranges. Precondition: any().
    Direction aim(const Ranges& ranges) const;
    bool flipped() const { return way_.flipped; }
    /// Whether the target is beyond the range, so that the antenna waits at the end of its range.
    bool waiting(const Ranges& ranges) const;

  private:
    /// A position has the azimuth of the target plus `turn`, and its elevation; flipped, 180 minus its
    /// elevation.
    struct Way {
        double turn = 0; // degrees: a multiple of 360; flipped, plus 180
        bool flipped = false;
        bool operator==(const Way&) const = default;
    };
    struct Worth {
        double outside; // degrees outside the range; 0: reachable
        double holds;   // degrees of the rest of the pass that can be followed
        double seconds; // time until the antenna is there
    };

    Direction position(const Way& way) const;
    Worth worth(const Way& way, const Direction& antenna, const Machine& machine) const;
    void choose(const Direction& antenna, const Machine& machine);
    /// Changes the way only if the gain is clear: the antenna is already moving.
    void chooseClearly(const Direction& antenna, const Machine& machine);
    void crossZenith(const Direction& antenna, const Machine& machine);
    double beyondEnd(const Ranges& ranges) const;
    void seeHeight(double elevation, bool first);
    void seeDrift(bool first);
    /// The azimuth, counted on through north from the azimuth of target_.
    double continued(double azimuth, const Ranges& ranges) const;

    std::optional<Direction> target_; // azimuth counts on through north
    Direction driftFrom_;
    std::optional<int> drift_; // of the target's azimuth: -1, 0 or 1; empty while unknown
    bool risen_ = false;       // above kPassBegins in this pass
    bool over_ = false;        // the pass is over, and no way has been chosen for the next one
    bool rises_ = true;        // by more than kRises since the target last sank
    double turned_ = 0;        // degrees of elevation: the highest while it rises, else the lowest
    Way way_;
    Time beyond_{};
};

} // namespace rotor
