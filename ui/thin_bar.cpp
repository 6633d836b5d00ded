#include "ui/thin_bar.h"

#include <QPainter>

namespace ui {

void ThinBar::setShare(double share) {
    if (share_ == share) return;
    share_ = share;
    update();
}

void ThinBar::paintEvent(QPaintEvent* /*event*/) {
    QColor ground = palette().color(QPalette::Highlight);
    QPainter painter(this);
    ground.setAlphaF(0.25F);
    painter.fillRect(rect(), ground);
    ground.setAlphaF(1);
    painter.fillRect(QRectF(0, 0, width() * share_, height()), ground);
}

} // namespace ui
