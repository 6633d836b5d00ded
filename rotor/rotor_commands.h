#pragma once

#include "rotor/direction.h"

namespace rotor {

enum class Axis { kAzimuth, kElevation };

/// What a program elsewhere may ask of the rotor, in Satellite Rotor.
class RotorCommands {
  public:
    virtual ~RotorCommands() = default;
    /// Where the antenna points, offsets not subtracted.
    virtual Direction position() const = 0;
    virtual Ranges ranges() const = 0;
    /// Whether the user lets the antenna follow (chkRotOnOff). While not, nothing below moves it.
    virtual bool following() const = 0;
    /// Turns an axis until halt, or an end of the range. `direction` is form::kForward or form::kBackward.
    virtual void turn(Axis axis, int direction, bool fast) = 0;
    /// Stops both axes where they are. Following goes on with the next target.
    virtual void halt() = 0;
    /// Turns the antenna to its parking place.
    virtual void park() = 0;
};

} // namespace rotor
