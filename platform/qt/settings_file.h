#pragma once

#include "platform/settings.h"

#include <filesystem>

namespace qt_ports {

/// The settings in a file of the INI format.
class SettingsFile : public platform::Settings {
  public:
    explicit SettingsFile(std::filesystem::path path) : path_(std::move(path)) {}

    Texts read(const std::string& section) const override;
    void write(const std::string& section, const Texts& texts) override;

  private:
    std::filesystem::path path_;
};

} // namespace qt_ports
