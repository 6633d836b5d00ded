#pragma once

#include "platform/sound.h"

#include <filesystem>

namespace windows_ports {

/// Sounds through the system's own call, which plays them on a thread of its own.
class Sound : public platform::Sound {
  public:
    explicit Sound(std::filesystem::path folder) : folder_(std::move(folder)) {}
    void play(const std::string& file) override;

  private:
    std::filesystem::path folder_;
};

} // namespace windows_ports
