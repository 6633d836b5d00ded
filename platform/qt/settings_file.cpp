#include "platform/qt/settings_file.h"

#include "runtime/errors.h"
#include "runtime/plain_file.h"

#include <QLockFile>
#include <QSettings>
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

/// Takes the same lock as other programs that edit the file with QSettings, but without waiting: waiting
/// would delay the step clock.
void take(QLockFile& lock, const std::filesystem::path& path) {
    const std::filesystem::path lockPath = lock.fileName().toStdString();
    const std::string held = "cannot be written: \"" + lockPath.filename().string() + "\" ";
    if (const std::string fault = runtime::faultOfFile(lockPath, kLongest); !fault.empty())
        fail(path, held + fault);
    if (lock.tryLock()) return;
    if (lock.error() != QLockFile::LockFailedError) fail(path, "cannot be written: no permission");
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

void SettingsFile::write(const std::string& section, const Texts& texts) {
    checkPlain(path_);
    QLockFile lock(nameOf(path_) + ".lock");
    take(lock, path_);
    // QSettings waits for the lock without limit. So QSettings edits a copy, and the copy then replaces the
    // file.
    std::error_code error;
    const bool exists = std::filesystem::exists(path_, error);
    const std::filesystem::path target = exists ? std::filesystem::canonical(path_, error) : path_;
    QFile old(nameOf(target));
    if (exists && !old.open(QIODevice::ReadOnly)) fail(path_, "cannot be read");
    const QByteArray bytes = exists ? old.readAll() : QByteArray();
    QTemporaryFile part(nameOf(target) + ".XXXXXX");
    if (!part.open() || part.write(bytes) != bytes.size() || !part.flush()) fail(path_, "cannot be written");
    {
        QSettings settings(part.fileName(), QSettings::IniFormat);
        check(settings, path_, "cannot be read");
        settings.beginGroup(QString::fromStdString(section));
        for (const auto& [name, text] : texts) {
            settings.setValue(QString::fromStdString(name), QString::fromStdString(text));
        }
        settings.sync();
        check(settings, path_, "cannot be written");
    }
    const std::filesystem::path made = part.fileName().toStdString();
    if (exists) {
        std::filesystem::permissions(made, std::filesystem::status(target, error).permissions(), error);
    }
    std::filesystem::rename(made, target, error);
    if (error) fail(path_, "cannot be written: " + error.message());
}

} // namespace qt_ports
