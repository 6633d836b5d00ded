#include "platform/qt/shell.h"

#include "platform/qt/data_files.h"

#include <QDesktopServices>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTextBrowser>
#include <QUrlQuery>

namespace qt_ports {

namespace {

constexpr QSize kPageSize{820, 720};

/// The toolkit's browser cannot show drawings in the page; it would show only their text.
class Page : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& name) override {
        static const QRegularExpression drawing("<svg.*?</svg>",
                                                QRegularExpression::DotMatchesEverythingOption);
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::HtmlResource) return resource;
        return QString::fromUtf8(resource.toByteArray()).remove(drawing);
    }
};

} // namespace

void Shell::openPage(const std::string& file, Failed failed) {
    const auto path = findDataFile(dataFolder_, "docs/" + QString::fromStdString(file));
    if (!path) return failed("The page \"" + file + "\" is missing from this installation.");
    const QUrl page = QUrl::fromLocalFile(*path);
    open(page, [this, page] { showPage(page); });
}

void Shell::startMail(const std::string& address, const std::string& subject, Failed failed) {
    QUrl mail;
    mail.setScheme("mailto");
    mail.setPath(QString::fromStdString(address));
    QUrlQuery query;
    query.addQueryItem("subject", QUrl::toPercentEncoding(QString::fromStdString(subject)));
    mail.setQuery(query);
    open(mail, [failed = std::move(failed)] { failed("No mail program is set up on this computer."); });
}

void Shell::open(const QUrl& url, std::function<void()> refused) {
    const QString opener = QStandardPaths::findExecutable("xdg-open");
    if (opener.isEmpty()) {
        if (!QDesktopServices::openUrl(url)) refused();
        return;
    }
    // Starts the opener as our own process, because the toolkit does not report whether the opener succeeded.
    // Nothing owns the process object: its destructor would kill the opener, which may have become the
    // browser.
    auto* process = new QProcess;
    for (const auto channel : {&QProcess::setStandardOutputFile, &QProcess::setStandardErrorFile})
        (process->*channel)(QProcess::nullDevice(), QIODevice::Truncate);
    process->setStandardInputFile(QProcess::nullDevice());
    const auto ended = [process, refused = std::move(refused)](bool taken) {
        process->deleteLater();
        if (!taken) refused();
    };
    QObject::connect(process, &QProcess::finished, &alive_,
                     [ended](int exitCode, QProcess::ExitStatus status) {
                         ended(status == QProcess::CrashExit || exitCode == 0);
                     });
    QObject::connect(process, &QProcess::errorOccurred, &alive_, [ended](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) ended(false);
    });
    process->start(opener, {QString::fromUtf8(url.toEncoded())});
}

void Shell::showPage(const QUrl& page) {
    if (!page_) {
        auto* browser = new Page;
        browser->setAttribute(Qt::WA_DeleteOnClose);
        browser->setWindowTitle("Twinstep help");
        browser->setSource(page);
        browser->resize(kPageSize);
        page_ = browser;
    }
    page_->show();
    page_->raise();
    page_->activateWindow();
}

} // namespace qt_ports
