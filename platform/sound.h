#pragma once

#include <string>

namespace platform {

class Sound {
  public:
    virtual ~Sound() = default;
    /// Plays a sound file of the program ("torvo.wav") without waiting for its end. A computer without sound
    /// stays silent.
    virtual void play(const std::string& file) = 0;
};

} // namespace platform
