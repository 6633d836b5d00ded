#include "platform/qt/settings_file.h"

#include "runtime/errors.h"
#include "runtime/plain_file.h"

#include <QLockFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace qt_ports {

namespace {

constexpr std::uintmax_t kLongest = 1'000'000; // bytes

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what) {
    throw runtime::FileError("\"" + path.filename().string() + "\" " + what);
}

void check(const QSettings& settings, const std::filesystem::path& path, const char* failure) {
    if (settings.status() == QSettings::NoError) return;
    const bool access = settings.status() == QSettings::AccessError;
    fail(path, access ? failure : "is not in the INI format");
}

void checkPlain(const std::filesystem::path& path) {
    if (const std::string fault = runtime::faultOfFile(path, kLongest); !fault.empty()) fail(path, fault);
}

/// Heeds the lock of other programs that edit the file with QSettings, but without waiting for it.
void checkLock(const std::filesystem::path& path) {
    std::filesystem::path lockPath = path;
    lockPath += ".lock";
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::symlink_status(lockPath, error))) return;
    const std::string held = "cannot be written: \"" + lockPath.filename().string() + "\" ";
    if (const std::string fault = runtime::faultOfFile(lockPath, kLongest); !fault.empty())
        fail(path, held + fault);
    QLockFile lock(nameOf(lockPath)); // removes one whose program has ended
    if (!lock.tryLock())
        fail(path, held + "is held by another program. Save again when that has ended, or delete the lock");
}

} // namespace

platform::Settings::Texts SettingsFile::read(const std::string& section) const {
    checkPlain(path_);
    QSettings settings(nameOf(path_), QSettings::IniFormat);
    check(settings, path_, "cannot be read");
    Texts texts;
    settings.beginGroup(QString::fromStdString(section));
    for (const QString& name : settings.childKeys()) {
        // In the file format a comma makes a list; here the comma belongs to the text.
        texts[name.toStdString()] = settings.value(name).toStringList().join(",").toStdString();
    }
    return texts;
}

std::string SettingsFile::edited(const QString& file, const std::map<std::string, Texts>& sections) const {
    {
        QSettings settings(file, QSettings::IniFormat);
        check(settings, path_, "cannot be read");
        for (const auto& [section, texts] : sections) {
            settings.beginGroup(QString::fromStdString(section));
            for (const auto& [name, text] : texts)
                settings.setValue(QString::fromStdString(name), QString::fromStdString(text));
            settings.endGroup();
        }
        settings.sync();
        check(settings, path_, "cannot be written");
    }
    QFile made(file);
    if (!made.open(QIODevice::ReadOnly)) fail(path_, "cannot be written");
    return made.readAll().toStdString();
}

void SettingsFile::write(const std::map<std::string, Texts>& sections) {
    checkPlain(path_);
    checkLock(path_);
    // QSettings flushes what it writes: it edits a copy in the folder that is no disk.
    QTemporaryFile copy(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + "/XXXXXX.ini");
    const auto old = storage_.read(path_, kLongest);
    const QByteArray bytes = QByteArray::fromStdString(old.value_or(""));
    if (!copy.open() || copy.write(bytes) != bytes.size() || !copy.flush()) fail(path_, "cannot be written");
    const std::string text = edited(copy.fileName(), sections);

    std::error_code error;
    const std::filesystem::path target = old ? std::filesystem::canonical(path_, error) : path_;
    std::filesystem::path part = target;
    part += ".part";
    storage_.remove(part);
    storage_.create(part, text);
    if (old) std::filesystem::permissions(part, std::filesystem::status(target, error).permissions(), error);
    storage_.rename(part, target);
    storage_.later([&storage = storage_, target] {
        try {
            storage.sync(target);
        } catch (const runtime::FileError&) { // It is written; a power failure may bring back the old one.
        }
    });
}

} // namespace qt_ports
