#pragma once

#include <string>

namespace platform {

class Sound {
  public:
    virtual ~Sound() = default;
    /// Plays a sound of the program, named by its file ("torvo.wav"), without waiting for its end. A machine
    /// without sound stays silent.
    virtual void play(const std::string& file) = 0;
};

} // namespace platform
