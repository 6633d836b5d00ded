#pragma once

#include "platform/settings.h"

#include <QByteArray>
#include <QRect>

class QWidget;

namespace ui {

/// Brings a window back to the size and place that it had when the program last ended.
class WindowPlace {
  public:
    /// Restores; without a stored place the window stays as it is. Both arguments outlive this object.
    WindowPlace(QWidget& window, platform::Settings& settings);
    WindowPlace(const WindowPlace&) = delete;
    WindowPlace& operator=(const WindowPlace&) = delete;
    /// Stores what has changed.
    ~WindowPlace();

  private:
    QWidget& window_;
    platform::Settings& settings_;
    QRect before_;
    Qt::WindowStates stateBefore_;
};

} // namespace ui
