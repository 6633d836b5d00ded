#pragma once

#include "platform/qt/fd_watcher.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

/// The event loop that the adapters run on, turned until something has happened.
class EventLoop {
  public:
    qt_ports::FdWatcher watcher;

    /// Returns whether `done` became true within `milliseconds`.
    static bool until(const std::function<bool()>& done, int milliseconds = 5000) {
        QElapsedTimer clock;
        clock.start();
        // With a time limit, processEvents does not wait: it would turn and turn, and the system would put a
        // thread so busy behind all others.
        QTimer look;
        look.start(20);
        while (!done()) {
            if (clock.elapsed() > milliseconds) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }
    static void runFor(int milliseconds) {
        until([] { return false; }, milliseconds);
    }
};
