#include "tests/wine/wine.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <gtest/gtest.h>
#include <iostream>
#include <stdexcept>
#include <sys/stat.h>

namespace {

Wine* theOne = nullptr;

/// Windows that nobody sees need no display: the driver that draws nothing is enough.
constexpr const char* kRegistry = "WINE REGISTRY Version 2\n\n"
                                  "[Software\\\\Wine\\\\Drivers]\n"
                                  "\"Graphics\"=\"null\"\n";
constexpr int kMakingMilliseconds = 180'000;

std::runtime_error problem(const QString& text) {
    return std::runtime_error(text.toStdString());
}

} // namespace

Wine::Wine(const QString& programs) : programs_(QDir(programs).absolutePath()) {
    if (QStandardPaths::findExecutable("wine").isEmpty())
        throw problem("there is no \"wine\" here; install the packages wine and wine64.");
    if (!folder_.isValid()) throw problem("no temporary folder: " + folder_.errorString());
    const QDir folder(folder_.path());
    if (!folder.mkdir("home") || !folder.mkdir("prefix"))
        throw problem("no folder can be made in " + folder_.path());
    QFile registry(folder.filePath("prefix/user.reg"));
    if (!registry.open(QFile::WriteOnly) || registry.write(kRegistry) < 0)
        throw problem(registry.fileName() + ": " + registry.errorString());
    registry.close();

    environment_ = QProcessEnvironment::systemEnvironment();
    for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "LC_ALL", "LC_CTYPE"})
        environment_.remove(display);
    environment_.insert("HOME", folder.filePath("home"));
    environment_.insert("WINEPREFIX", folder.filePath("prefix"));
    environment_.insert("WINEDEBUG", "-all");
    environment_.insert("WINEDLLOVERRIDES", "mscoree,mshtml="); // neither is needed, nor asked for
    environment_.insert("LANG", "C.UTF-8");
    // A variable of this name reaches a Windows program without "WINE", and none of a Linux program's Qt
    // does.
    environment_.insert("WINEQT_QPA_GENERIC_PLUGINS", "hand");
    run("wine", {"wineboot", "--init"}, kMakingMilliseconds);
    if (!QFileInfo::exists(folder.filePath("prefix/drive_c/windows/system32/user32.dll")))
        throw problem("wineboot made no prefix in " + folder.filePath("prefix"));
    theOne = this;
}

Wine::~Wine() {
    theOne = nullptr;
    try {
        run("wineserver", {"--kill"});
        run("wineserver", {"--wait"});
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
}

Wine& Wine::instance() {
    if (!theOne) throw std::runtime_error("Wine was not started");
    return *theOne;
}

void Wine::run(const QString& command, const QStringList& arguments, int milliseconds) const {
    QProcess process;
    process.setProcessEnvironment(environment_);
    process.setProcessChannelMode(QProcess::MergedChannels);
    // What Wine leaves running in the background must not hold a pipe of ours.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(command, arguments);
    const QString what = command + " " + arguments.join(' ');
    if (!process.waitForStarted()) throw problem(what + ": " + process.errorString());
    if (!process.waitForFinished(milliseconds)) {
        process.kill();
        process.waitForFinished();
        throw problem(what + " did not end within " + QString::number(milliseconds / 1000) + " seconds.");
    }
    const bool aboutNothing = command == "wineserver"; // 1 or 2: it was gone already
    if (!aboutNothing && (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0))
        throw problem(what + " failed with " + QString::number(process.exitCode()) + ".");
}

QString Wine::program(const QString& file) const {
    QString path = programs_ + "/" + file;
    if (!QFileInfo::exists(path)) throw problem(path + " was not built.");
    return path;
}

std::filesystem::path Wine::folder() const {
    return environment_.value("WINEPREFIX").toStdString();
}

int Wine::serverProcess() const {
    // The server says in its lock's folder, which is named after the prefix, that it runs; its process is the
    // one that has this folder as its own.
    struct stat prefix {};
    if (stat(environment_.value("WINEPREFIX").toLocal8Bit().constData(), &prefix) != 0) return 0;
    const QString name = QString("server-%1-%2").arg(prefix.st_dev, 0, 16).arg(prefix.st_ino, 0, 16);
    for (const QString& process : QDir("/proc").entryList(QDir::Dirs)) {
        if (process.toInt() > 0 && QFile::symLinkTarget("/proc/" + process + "/cwd").endsWith(name) &&
            QFile::symLinkTarget("/proc/" + process + "/exe").contains("wineserver"))
            return process.toInt();
    }
    return 0;
}

WindowsProgram::WindowsProgram(const QString& file, const QStringList& arguments) {
    process_.setProcessEnvironment(Wine::instance().environment());
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start("wine", QStringList{Wine::instance().program(file)} + arguments);
    if (!process_.waitForStarted()) throw problem(file + ": " + process_.errorString());
}

WindowsProgram::~WindowsProgram() {
    kill();
}

void WindowsProgram::tell(const std::string& line) {
    process_.write((line + "\n").c_str());
    // Out of the buffer now, not with the next round of the event loop.
    while (process_.bytesToWrite() > 0 && process_.waitForBytesWritten()) {
    }
}

std::string WindowsProgram::line(const std::string& beginning) {
    return find(beginning, [&](const std::string& line) { return line.starts_with(beginning); });
}

std::string WindowsProgram::lineWith(const std::string& part) {
    return find(part, [&](const std::string& line) { return line.find(part) != std::string::npos; });
}

std::string WindowsProgram::find(const std::string& what,
                                 const std::function<bool(const std::string&)>& fits) {
    std::string last;
    bool found = false;
    waitFor([&] {
        const bool ended = process_.state() == QProcess::NotRunning;
        output_ += process_.readAll().toStdString();
        for (std::size_t end; !found && (end = output_.find('\n')) != std::string::npos;) {
            last = output_.substr(0, end);
            output_.erase(0, end + 1);
            if (last.ends_with('\r')) last.pop_back();
            found = fits(last);
        }
        return found || ended;
    });
    if (found) return last;
    ADD_FAILURE() << process_.arguments().join(' ').toStdString() << " never said \"" << what
                  << "\"; its last words: " << last << output_;
    return {};
}

bool WindowsProgram::ends() {
    return waitFor([this] { return process_.state() == QProcess::NotRunning; });
}

void WindowsProgram::kill() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished();
}

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
    // Wakes the loop when the time is over, and now and then for what no event tells of.
    constexpr int kLookMilliseconds = 20;
    QTimer look;
    look.start(kLookMilliseconds);
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > milliseconds) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}
