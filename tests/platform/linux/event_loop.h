#pragma once

#include "platform/qt/fd_watcher.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

/// The event loop that the adapters run on, turned until something has happened.
class EventLoop {
  public:
    qt_ports::FdWatcher watcher;

    /// Returns whether `done` became true within `milliseconds`.
    static bool until(const std::function<bool()>& done, int milliseconds = 5000) {
        QElapsedTimer clock;
        clock.start();
        while (!done()) {
            if (clock.elapsed() > milliseconds) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        }
        return true;
    }
    static void runFor(int milliseconds) {
        until([] { return false; }, milliseconds);
    }
};
