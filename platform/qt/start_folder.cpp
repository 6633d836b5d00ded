#include "platform/qt/start_folder.h"

#include <QDir>
#include <QStandardPaths>

namespace qt_ports {

std::filesystem::path userDataFolder() {
    // Not AppDataLocation: it ends in the name by which the program was started.
    QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    // The toolkit accepts a relative path from the environment unchanged.
    if (QDir::isRelativePath(data)) data = QDir::homePath() + "/.local/share";
    return QDir::cleanPath(data + "/twinstep").toStdU16String();
}

} // namespace qt_ports
