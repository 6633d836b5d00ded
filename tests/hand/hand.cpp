#include "hand.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <unistd.h>

namespace {

/// Carries out one order from standard input, in the event loop; answers on standard output.
void obey(const QByteArray& order) {
    const QByteArray what = order.split(' ').constFirst();
    const QString name = QString::fromUtf8(order.mid(what.size() + 1));
    std::string reply = "done";
    if (what == "click") {
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* button = qobject_cast<QAbstractButton*>(widget);
            if (button && button->objectName() == name) button->click();
        }
    } else if (what == "open") {
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QMenu")) continue; // its entries are found in the window
            // Later, because a dialog keeps its opener waiting.
            if (auto* action = window->findChild<QAction*>(name))
                QTimer::singleShot(0, action, [action] { action->trigger(); });
            auto* button = window->findChild<QAbstractButton*>(name);
            if (button && button->window() == window)
                QTimer::singleShot(0, button, [button] { button->click(); });
        }
    } else if (what == "choose") {
        const qsizetype nameEnd = name.indexOf(' ');
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* box = qobject_cast<QComboBox*>(widget);
            if (box && box->objectName() == name.left(nameEnd))
                emit box->activated(box->findText(name.mid(nameEnd + 1)));
        }
    } else if (what == "text") {
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (const auto* label = window->findChild<QLabel*>(name)) reply = label->text().toStdString();
        }
    } else if (what == "box") {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        reply = box ? box->text().toStdString() : "none";
    } else if (what == "accept" || what == "decline") {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->button(what == "accept" ? QMessageBox::Ok : QMessageBox::Cancel)->click();
    } else if (what == "hang") {
        while (true) {
        }
    } else if (what == "exit") {
        std::exit(EXIT_SUCCESS);
    } else if (what == "abort") {
        std::abort();
    } else {
        reply = "what?";
    }
    std::ranges::replace(reply, '\n', ' '); // an answer is one line
    std::cout << reply << std::endl;
}

/// The hand lives as long as the program. A thread reads, as not every system has events for standard input.
class Hand : public QObject {
  public:
    Hand() {
        std::thread([this] { read(); }).detach();
    }

  private:
    void read() {
        QByteArray orders;
        std::array<char, 256> bytes{};
        while (true) {
            const auto size = ::read(STDIN_FILENO, bytes.data(), bytes.size());
            if (size <= 0) return;
            orders.append(bytes.data(), size);
            for (qsizetype end = 0; (end = orders.indexOf('\n')) >= 0;) {
                const QByteArray order = orders.left(end).trimmed();
                orders.remove(0, end + 1);
                QMetaObject::invokeMethod(this, [this, order] {
                    // Later, so that an order that opens a box leaves the next one to be read.
                    QTimer::singleShot(0, this, [order] { obey(order); });
                });
            }
        }
    }
};

} // namespace

QObject* HandPlugin::create(const QString& /*key*/, const QString& /*arguments*/) {
    return new Hand;
}
