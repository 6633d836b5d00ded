#include "ui/assistant_pictures.h"

#include "ui/caption_label.h"
#include "ui/card.h"
#include "ui/colours.h"

#include <QPainter>
#include <cmath>
#include <numbers>

namespace ui {

namespace {

constexpr int kWires = 4;
constexpr double kThin = 1.5, kThick = 2.5;

QColor accent(const QWidget& widget) {
    return widget.palette().color(QPalette::Active, QPalette::Highlight);
}

} // namespace

QSize ShaftPicture::sizeHint() const {
    const int side = std::max(8 * kGrid, fontMetrics().height() * 7 / 2);
    return {side, side};
}

void ShaftPicture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    const double radius = width() / 2.0 - kThick;
    const double angle = share() * 2 * std::numbers::pi;
    const QPointF towards(std::sin(angle), -std::cos(angle));
    painter.setPen(QPen(quietText(palette()), kThin));
    painter.drawEllipse(centre, radius, radius);
    painter.drawLine(centre - QPointF(0, radius), centre - QPointF(0, radius * 0.8)); // where a turn ends
    painter.setPen(QPen(accent(*this), kThick, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre, centre + towards * radius * 0.75);
    painter.setBrush(accent(*this));
    painter.drawEllipse(centre, kThick, kThick);
}

WiresPicture::WiresPicture(const form::AssistantEngine& engine, int first) : engine_(engine), first_(first) {
    setFixedHeight(WiresPicture::sizeHint().height());
}

QSize WiresPicture::sizeHint() const {
    return {20 * kGrid, 2 * fontMetrics().height() + 2 * kGrid};
}

void WiresPicture::paintEvent(QPaintEvent* /*event*/) {
    if (!engine_.wiresToSwap) return;
    const auto [one, other] = *engine_.wiresToSwap;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double column = width() / (kWires + 1.0);
    const double line = fontMetrics().height();
    for (int wire = 1; wire <= kWires; ++wire) {
        const bool swapped = wire == one || wire == other;
        const int coil = wire == one ? other : wire == other ? one : wire;
        const QPointF from(wire * column, line), to(coil * column, height() - kGrid / 2.0);
        const QColor colour = swapped ? accent(*this) : quietText(palette());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRectF(from.x() - column / 2, 0, column, line), Qt::AlignCenter,
                         QString::number(first_ + wire - 1));
        painter.setPen(QPen(colour, swapped ? kThick : kThin));
        painter.setBrush(colour);
        painter.drawLine(from, to);
        painter.drawEllipse(to, kThick, kThick);
    }
}

} // namespace ui
