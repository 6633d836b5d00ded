#pragma once

#include "platform/settings.h"
#include "platform/storage.h"

#include <QString>
#include <filesystem>

namespace qt_ports {

/// The settings in a file of the INI format. No call waits for the disk: engines may step meanwhile.
class SettingsFile : public platform::Settings {
  public:
    SettingsFile(platform::Storage& storage, std::filesystem::path path)
        : storage_(storage), path_(std::move(path)) {}

    Texts read(const std::string& section) const override;
    void write(const std::map<std::string, Texts>& sections) override;

  private:
    std::string edited(const QString& file, const std::map<std::string, Texts>& sections) const;

    platform::Storage& storage_;
    std::filesystem::path path_;
};

} // namespace qt_ports
