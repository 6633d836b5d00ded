#pragma once

#include <QCoreApplication>
#include <QString>
#include <filesystem>
#include <optional>

namespace qt_ports {

/// Finds a data file of the program ("docs/help.html"). An installed program looks in `../share/twinstep`,
/// relative to the executable's folder, or beside the executable, so that it never reads the files of another
/// version. A program in its
/// build folder looks in `sourceFolder`; it is empty in an installed program.
std::optional<QString> findDataFile(const std::filesystem::path& sourceFolder, const QString& file,
                                    const QString& programFolder = QCoreApplication::applicationDirPath());

} // namespace qt_ports
