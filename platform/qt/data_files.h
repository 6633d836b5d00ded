#pragma once

#include <QString>
#include <filesystem>
#include <optional>

namespace qt_ports {

/// A file that ships with the program ("docs/help.html"): beside the executable, in the folder given, or
/// where an installed program keeps its data.
std::optional<QString> findDataFile(const std::filesystem::path& dataFolder, const QString& file);

} // namespace qt_ports
