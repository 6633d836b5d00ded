#pragma once

#include <filesystem>

namespace qt_ports {

/// The folder of the user's own data: `$XDG_DATA_HOME/twinstep`, or `~/.local/share/twinstep` where that
/// variable is not set or names no absolute path (XDG base directories, freedesktop.org). It need not exist
/// yet.
std::filesystem::path userDataFolder();

} // namespace qt_ports
