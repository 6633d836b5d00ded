#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace qt_ports {

/// A file of texts by name, in the INI format, that users may edit by hand.
class SettingsFile {
  public:
    explicit SettingsFile(std::filesystem::path path) : path_(std::move(path)) {}

    /// Empty when there is no file. Throws runtime::FileError when it cannot be read or is no INI file.
    std::map<std::string, std::string> read() const;
    /// Sets these names; all others stay. Throws runtime::FileError; the file is then as it was.
    void write(const std::map<std::string, std::string>& texts);

  private:
    std::filesystem::path path_;
};

} // namespace qt_ports
