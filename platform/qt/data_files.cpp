#include "platform/qt/data_files.h"

#include <QFileInfo>

namespace qt_ports {

std::optional<QString> findDataFile(const std::filesystem::path& sourceFolder, const QString& file,
                                    const QString& programFolder) {
    const QString source = QString::fromStdU16String(sourceFolder.u16string());
    for (const QString& folder : {programFolder + "/../share/twinstep", programFolder, source}) {
        if (folder.isEmpty()) continue;
        const QFileInfo candidate(folder + '/' + file);
        if (candidate.isFile()) return candidate.canonicalFilePath();
    }
    return std::nullopt;
}

} // namespace qt_ports
