#include "platform/qt/fd_watcher.h"

#include <QCoreApplication>
#include <QSocketNotifier>

namespace qt_ports {

namespace {

class Watch : public linux_ports::FdWatch {
  public:
    Watch(int fd, QSocketNotifier::Type type, std::function<void()> ready)
        : notifier_(new QSocketNotifier(fd, type, QCoreApplication::instance())) {
        QObject::connect(notifier_, &QSocketNotifier::activated, notifier_,
                         [ready = std::move(ready)] { ready(); });
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
};

} // namespace

std::unique_ptr<linux_ports::FdWatch> FdWatcher::watch(int fd, std::function<void()> ready) {
    return std::make_unique<Watch>(fd, QSocketNotifier::Read, std::move(ready));
}

std::unique_ptr<linux_ports::FdWatch> FdWatcher::watchRoom(int fd, std::function<void()> ready) {
    return std::make_unique<Watch>(fd, QSocketNotifier::Write, std::move(ready));
}

} // namespace qt_ports
