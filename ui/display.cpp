#include "ui/display.h"

#include <QApplication>
#include <QMessageBox>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

namespace ui {

namespace {
std::function<void()> lastWish;
} // namespace

void notify(const std::string& what) {
    std::cerr << "twinstep: " << what << std::endl;
    QMetaObject::invokeMethod(QCoreApplication::instance(), [what] {
        auto* box = new QMessageBox(QMessageBox::Warning, "Twinstep", QString::fromStdString(what));
        box->setTextFormat(Qt::PlainText);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setModal(false);
        box->show();
    });
}

void showFailure(int argc, char** argv, const std::string& why) {
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) return;
    const QApplication application(argc, argv);
    QMessageBox(QMessageBox::Critical, "Twinstep", QString::fromStdString(why)).exec();
}

void tellOfNoDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::cerr
            << "twinstep: there is no display to show the window on; start it from a desktop session, or "
               "set DISPLAY.\n";
        std::_Exit(EXIT_FAILURE);
    }
    const bool aboutTheDisplay = context.category && std::strncmp(context.category, "qt.qpa.", 7) == 0;
    if (!aboutTheDisplay) std::cerr << text.toStdString() << '\n';
}

LastWish::LastWish(std::function<void()> wish) {
    static const int registered = std::atexit([] {
        if (lastWish) std::exchange(lastWish, nullptr)();
    });
    static_cast<void>(registered);
    lastWish = std::move(wish);
}

LastWish::~LastWish() {
    lastWish = nullptr;
}

} // namespace ui
