#include "platform/qt/fd_watcher.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

namespace qt_ports {

namespace {

class Watch : public linux_ports::FdWatch {
  public:
    Watch(int fd, QSocketNotifier::Type type, std::function<void()> ready, std::chrono::milliseconds rest)
        : notifier_(new QSocketNotifier(fd, type, QCoreApplication::instance())) {
        rest_.setSingleShot(true);
        rest_.setInterval(rest);
        QObject::connect(&rest_, &QTimer::timeout, notifier_, [this] { notifier_->setEnabled(true); });
        QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this, ready = std::move(ready)] {
            if (rest_.interval() > 0) {
                notifier_->setEnabled(false);
                rest_.start();
            }
            ready(); // may destroy this watch
        });
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    // Later, because this may run inside the notifier's own signal.
    ~Watch() override {
        notifier_->setEnabled(false);
        notifier_->disconnect();
        notifier_->deleteLater();
    }

  private:
    QSocketNotifier* notifier_;
    QTimer rest_;
};

} // namespace

std::unique_ptr<linux_ports::FdWatch> FdWatcher::watch(int fd, std::function<void()> ready,
                                                       std::chrono::milliseconds rest) {
    return std::make_unique<Watch>(fd, QSocketNotifier::Read, std::move(ready), rest);
}

std::unique_ptr<linux_ports::FdWatch> FdWatcher::watchRoom(int fd, std::function<void()> ready) {
    return std::make_unique<Watch>(fd, QSocketNotifier::Write, std::move(ready), std::chrono::milliseconds());
}

} // namespace qt_ports
