#pragma once

#include "rotor/path.h"

namespace rotor {

/// The present state of one axis of the rotator.
struct AxisState {
    double position = 0; // degrees
    double step = 1;     // degrees of a step, above 0
    int running = 0;     // 1 upwards, -1 downwards, 0: it stands
    int last = 0;        // the direction in which it moved last; 0: it has not moved yet
};

/// When an axis starts, and how fast it runs. In degrees.
struct AxisThresholds {
    double restart = 0; // the error at which a standing axis starts; at least a step
    double fast = 0;    // the error above which it runs fast; 0: always
    double reverse = 0; // the error beyond the restart at which it turns back
};

/// The command for an axis.
struct Order {
    int direction = 0; // 1 upwards, -1 downwards, 0: stop
    bool fast = false;
    double target = 0; // degrees: the axis stops on the step that reaches this position
    bool operator==(const Order&) const = default;
};

/// Decides whether and how an axis moves towards `aim`. A running axis follows a target that moves ahead of
/// it without a stop.
Order orderFor(const AxisState& axis, double aim, const AxisThresholds& thresholds);

/// Follows a target with both axes. The caller passes the time in.
class Follower {
  public:
    using Time = Path::Time;
    struct Settings {
        Machine machine;
        double followFrom = -5; // degrees of elevation; below, the antenna stands
        AxisThresholds azimuth, elevation;
    };
    struct Axes {
        AxisState azimuth, elevation;
        Direction direction() const { return {azimuth.position, elevation.position}; }
    };
    struct Orders {
        Order azimuth, elevation;
    };

    /// Call when following begins, or goes on after silence: forgets the previous targets.
    void reset();
    /// Takes a new complete target.
    void take(const Direction& target, const Axes& axes, const Settings& settings);
    /// Returns the commands for both axes; `time` is the time since the last call.
    Orders look(Time time, const Axes& axes, const Settings& settings);

    const Path& path() const { return path_; }
    /// Whether the target is too low to be followed.
    bool below() const { return below_; }
    /// Its pass is over: it has set clearly below what is followed.
    bool over() const { return over_; }

    /// Whether the last call of look began a turn to the other end of the range.
    bool turnedRound() const { return turnedRound_; }

  private:
    Path path_;
    bool below_ = false;
    bool over_ = false;
    bool turnedRound_ = false;
};

} // namespace rotor
