#pragma once

#include "platform/sound.h"

#include <filesystem>
#include <memory>

namespace qt_ports {

/// Plays the files of the folder "assets/sounds". Everything that may wait for the sound system happens on
/// a thread of its own, which is started by the first sound.
class Sound : public platform::Sound {
  public:
    /// `dataFolder` holds "assets" where it does not lie beside the executable.
    explicit Sound(std::filesystem::path dataFolder = {});
    ~Sound() override;

    void play(const std::string& file) override;

  private:
    class Player;
    std::filesystem::path dataFolder_;
    std::unique_ptr<Player> player_;
};

} // namespace qt_ports
