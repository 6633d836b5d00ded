#include "ui/plot.h"

namespace ui {

Plot::Plot() {
    constexpr int kLookMilliseconds = 100;
    looking_.setInterval(kLookMilliseconds);
    connect(&looking_, &QTimer::timeout, this, [this] { look(); });
}

void Plot::showEvent(QShowEvent* event) {
    look();
    looking_.start();
    QWidget::showEvent(event);
}

void Plot::hideEvent(QHideEvent* event) {
    looking_.stop();
    QWidget::hideEvent(event);
}

} // namespace ui
