#pragma once

#include "platform/shell.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <filesystem>

namespace qt_ports {

/// The user's browser and mail program. Pages are in the folder "docs"; without a browser they open in a
/// window of this program.
class Shell : public platform::Shell {
  public:
    /// `dataFolder` contains "docs" if "docs" is not beside the executable.
    explicit Shell(std::filesystem::path dataFolder = {}) : dataFolder_(std::move(dataFolder)) {}
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;
    ~Shell() override { delete page_; }

    void openPage(const std::string& file, Failed failed) override;
    void startMail(const std::string& address, const std::string& subject, Failed failed) override;

  private:
    /// Passes the address to the desktop; calls `refused` if no program accepts it.
    void open(const QUrl& url, std::function<void()> refused);
    void showPage(const QUrl& page);

    std::filesystem::path dataFolder_;
    QPointer<QWidget> page_;
    QObject alive_; // later signals are ignored once it is destroyed
};

} // namespace qt_ports
