#include "platform/qt/data_files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace qt_ports {

std::optional<QString> findDataFile(const std::filesystem::path& dataFolder, const QString& file) {
    const QString program = QCoreApplication::applicationDirPath();
    const QString given = QFile::decodeName(dataFolder.string().c_str());
    for (const QString& folder : {program, given, program + "/../share/twinstep"}) {
        if (folder.isEmpty()) continue;
        const QFileInfo candidate(folder + '/' + file);
        if (candidate.isFile()) return candidate.canonicalFilePath();
    }
    return std::nullopt;
}

} // namespace qt_ports
