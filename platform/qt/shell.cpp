#include "platform/qt/shell.h"

#include "platform/qt/data_files.h"
#include "runtime/errors.h"

#include <QDesktopServices>
#include <QUrl>
#include <QUrlQuery>

namespace qt_ports {

void Shell::openPage(const std::string& file) {
    const auto path = findDataFile(dataFolder_, "docs/" + QString::fromStdString(file));
    if (!path) throw runtime::ObjectError("The page \"" + file + "\" is missing from this installation.");
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(*path))) {
        throw runtime::ObjectError("No web browser took the page. Open it yourself: " + path->toStdString());
    }
}

void Shell::startMail(const std::string& address, const std::string& subject) {
    QUrl mail;
    mail.setScheme("mailto");
    mail.setPath(QString::fromStdString(address));
    QUrlQuery query;
    query.addQueryItem("subject", QUrl::toPercentEncoding(QString::fromStdString(subject)));
    mail.setQuery(query);
    if (!QDesktopServices::openUrl(mail))
        throw runtime::ObjectError("No mail program is set up on this computer.");
}

} // namespace qt_ports
