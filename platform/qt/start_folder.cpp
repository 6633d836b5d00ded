#include "platform/qt/start_folder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace qt_ports {

std::filesystem::path userDataFolder() {
    // Not AppDataLocation: that ends in whatever name the program was called by.
    QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    // The toolkit takes a relative path of the environment as it stands.
    if (QDir::isRelativePath(data)) data = QDir::homePath() + "/.local/share";
    return QFile::encodeName(QDir::cleanPath(data + "/twinstep")).toStdString();
}

} // namespace qt_ports
