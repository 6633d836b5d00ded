#pragma once

#include "rotor/direction.h"

namespace rotor {

enum class Axis { kAzimuth, kElevation };

/// The commands of rotator programs, in Satellite Rotor.
class RotorCommands {
  public:
    virtual ~RotorCommands() = default;
    /// The antenna's position; the offsets are not subtracted.
    virtual Direction position() const = 0;
    /// Whether Follow (chkRotOnOff) is ticked. If not, the commands below do not move the antenna.
    virtual bool following() const = 0;
    /// Turns an axis until halt or an end of the range. `direction` is form::kForward or form::kBackward.
    virtual void turn(Axis axis, int direction, bool fast) = 0;
    /// Stops both axes at once. Following goes on with the next target.
    virtual void halt() = 0;
    /// Turns the antenna to its parking place.
    virtual void park() = 0;
};

} // namespace rotor
