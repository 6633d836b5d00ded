#pragma once

#include "platform/sound.h"

#include <filesystem>
#include <memory>

namespace qt_ports {

/// Plays the files of the folder "assets/sounds". A separate thread does all calls that may wait for the
/// sound system. The first sound starts this thread.
class Sound : public platform::Sound {
  public:
    /// `dataFolder` contains "assets" if "assets" is not beside the executable.
    explicit Sound(std::filesystem::path dataFolder = {});
    ~Sound() override;

    void play(const std::string& file) override;

  private:
    class Player;
    std::filesystem::path dataFolder_;
    std::unique_ptr<Player> player_;
};

} // namespace qt_ports
