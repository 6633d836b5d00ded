#pragma once

#include <filesystem>

namespace qt_ports {

/// The folder of the user's own data: `$XDG_DATA_HOME/twinstep`, or `~/.local/share/twinstep` if that
/// variable is not set or not an absolute path (XDG base directories, freedesktop.org); on Windows
/// `%LOCALAPPDATA%\twinstep`. The folder need not exist yet.
std::filesystem::path userDataFolder();

} // namespace qt_ports
