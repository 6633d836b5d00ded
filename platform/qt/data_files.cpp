#include "platform/qt/data_files.h"

#include <QFile>
#include <QFileInfo>

namespace qt_ports {

std::optional<QString> findDataFile(const std::filesystem::path& sourceFolder, const QString& file,
                                    const QString& programFolder) {
    const QString source = QFile::decodeName(sourceFolder.string().c_str());
    for (const QString& folder : {programFolder + "/../share/twinstep", source}) {
        if (folder.isEmpty()) continue;
        const QFileInfo candidate(folder + '/' + file);
        if (candidate.isFile()) return candidate.canonicalFilePath();
    }
    return std::nullopt;
}

} // namespace qt_ports
