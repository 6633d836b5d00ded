#include "ui/lamp.h"

#include "ui/colours.h"

#include <QEvent>
#include <QPainter>
#include <QRadialGradient>

namespace ui {

Lamp::Lamp(QWidget* parent) : QWidget(parent) {
    setFixedSize(sizeHint());
    // Opaque, so that a step need not paint anything below.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Lamp::setColour(const QColor& colour) {
    if (colour_ == colour) return;
    colour_ = colour;
    update();
}

QSize Lamp::sizeHint() const {
    const int side = qMax(24, fontMetrics().height() + 8);
    return {side, side};
}

void Lamp::changeEvent(QEvent* event) {
    pictures_.clear();
    if (event->type() == QEvent::FontChange) setFixedSize(sizeHint());
    QWidget::changeEvent(event);
}

void Lamp::resizeEvent(QResizeEvent* event) {
    pictures_.clear();
    QWidget::resizeEvent(event);
}

void Lamp::paintEvent(QPaintEvent* /*event*/) {
    QPixmap& picture = pictures_[colour_.rgba()];
    if (picture.devicePixelRatio() != devicePixelRatioF() || picture.isNull()) picture = paint();
    QPainter(this).drawPixmap(0, 0, picture);
}

/// Gradients and round edges are costly, and lamps change with each step: each colour is painted once.
QPixmap Lamp::paint() const {
    QPixmap picture(size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(cardColour(palette()));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPointF centre = QRectF(rect()).center();
    const double halo = width() / 2.0;
    const double glass = halo * 0.58;
    const bool lit = colour_ != QColor(Qt::black);

    if (lit) {
        QRadialGradient glow(centre, halo);
        QColor inner = colour_, outer = colour_;
        inner.setAlphaF(0.55F);
        outer.setAlphaF(0.0F);
        glow.setColorAt(glass / halo * 0.8, inner);
        glow.setColorAt(1.0, outer);
        painter.setBrush(glow);
        painter.drawEllipse(centre, halo, halo);
    }

    // The ring around the glass, lit from above.
    QLinearGradient ring(centre.x(), centre.y() - glass, centre.x(), centre.y() + glass);
    const QColor window = palette().color(QPalette::Window), text = palette().color(QPalette::WindowText);
    ring.setColorAt(0, mixed(window, text, 0.55));
    ring.setColorAt(1, mixed(window, text, 0.2));
    painter.setBrush(ring);
    painter.drawEllipse(centre, glass + 1.5, glass + 1.5);

    QRadialGradient body(centre, glass, centre - QPointF(glass * 0.3, glass * 0.4));
    body.setColorAt(0, lit ? mixed(colour_, Qt::white, 0.65) : QColor(mixed(colour_, Qt::white, 0.36)));
    body.setColorAt(0.45, lit ? colour_ : mixed(colour_, Qt::white, 0.2));
    body.setColorAt(1, lit ? colour_.darker(135) : mixed(colour_, Qt::white, 0.1));
    painter.setBrush(body);
    painter.drawEllipse(centre, glass, glass);
    painter.end();
    return picture;
}

} // namespace ui
