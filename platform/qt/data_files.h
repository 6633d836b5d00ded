#pragma once

#include <QCoreApplication>
#include <QString>
#include <filesystem>
#include <optional>

namespace qt_ports {

/// A file that ships with the program ("docs/help.html"). An installed program has it in `../share/twinstep`,
/// seen from the executable's folder, so that it never reads the files of another version; one that runs from
/// its build folder has it in `sourceFolder`, which an installed program leaves empty.
std::optional<QString> findDataFile(const std::filesystem::path& sourceFolder, const QString& file,
                                    const QString& programFolder = QCoreApplication::applicationDirPath());

} // namespace qt_ports
