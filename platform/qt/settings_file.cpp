#include "platform/qt/settings_file.h"

#include "runtime/errors.h"

#include <QSettings>

namespace qt_ports {

namespace {

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

void check(const QSettings& settings, const std::filesystem::path& path, const char* failure) {
    if (settings.status() == QSettings::NoError) return;
    const bool access = settings.status() == QSettings::AccessError;
    throw runtime::FileError("\"" + path.filename().string() + "\" " +
                             (access ? failure : "is not in the INI format"));
}

} // namespace

platform::Settings::Texts SettingsFile::read(const std::string& section) const {
    QSettings settings(nameOf(path_), QSettings::IniFormat);
    check(settings, path_, "cannot be read");
    Texts texts;
    settings.beginGroup(QString::fromStdString(section));
    for (const QString& name : settings.childKeys()) {
        // A comma makes a list for the file format; here it is a part of the text.
        texts[name.toStdString()] = settings.value(name).toStringList().join(",").toStdString();
    }
    return texts;
}

void SettingsFile::write(const std::string& section, const Texts& texts) {
    QSettings settings(nameOf(path_), QSettings::IniFormat);
    check(settings, path_, "cannot be read");
    settings.beginGroup(QString::fromStdString(section));
    for (const auto& [name, text] : texts) {
        settings.setValue(QString::fromStdString(name), QString::fromStdString(text));
    }
    settings.sync();
    check(settings, path_, "cannot be written");
}

} // namespace qt_ports
