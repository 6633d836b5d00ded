#include "ui/table_plot.h"

#include "memory/frequency_table.h"
#include "ui/colours.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace ui {

namespace {

constexpr double kMarkRadius = 4;
constexpr double kReach = 10;                                      // pixels from an entry that still mean it
constexpr double kDragStart = 3;                                   // pixels
constexpr double kSmallestSpan = 1e-4;                             // MHz: 100 Hz
constexpr double kMargin = 0.05;                                   // of the span, on both sides
constexpr double kLeft = 52, kRight = 16, kTop = 26, kBottom = 30; // pixels around the curves
constexpr int kGridLines = 5;

/// The distance of about `count` round grid lines over a span: 1, 2 or 5 times a power of ten.
double roundStep(double span, int count) {
    const double raw = span / count;
    const double power = std::pow(10, std::floor(std::log10(raw)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (raw <= factor * power) return factor * power;
    }
    return 10 * power;
}

QString gridText(double value, double step) {
    return QString::number(value, 'f', std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9))));
}

/// Engine A takes the text's colour, engine B the accent, as the sky plot's antenna and target do.
QColor colourOf(bool engineB, const QPalette& palette) {
    return palette.color(engineB ? QPalette::Highlight : QPalette::WindowText);
}

double positionOf(const form::TableEntry& entry, bool engineB) {
    return engineB ? entry.posB : entry.posA;
}

} // namespace

TablePlot::TablePlot(const form::Form1& form, form::FrmHiResMem& window) : form_(form), window_(window) {}

TablePlot::Picture TablePlot::seen() const {
    Picture now{.table = form_.hiResMem,
                .curve = form_.tuner.curve,
                .megahertz = {},
                .posA = form_.sngPosA,
                .posB = form_.sngPosB,
                .row = window_.grid.Row,
                .engines = window_.grid.Engines};
    if (form_.frequencyNow) now.megahertz = static_cast<double>(*form_.frequencyNow) / 1e6;
    return now;
}

void TablePlot::look() {
    Picture now = seen();
    if (now == picture_) return;
    picture_ = std::move(now);
    positions_ = allPositions();
    update();
}

TablePlot::Span TablePlot::allFrequencies() const {
    if (picture_.table.empty()) return {1.8, 30};
    const double low = picture_.table.front().megahertz;
    const double high = picture_.table.back().megahertz;
    const double margin = std::max((high - low) * kMargin, 0.01);
    return {low - margin, high + margin};
}

TablePlot::Span TablePlot::allPositions() const {
    double low = std::min(picture_.posA, picture_.posB);
    double high = std::max(picture_.posA, picture_.posB);
    for (const form::TableEntry& entry : picture_.table) {
        low = std::min({low, entry.posA, entry.posB});
        high = std::max({high, entry.posA, entry.posB});
    }
    const double margin = std::max((high - low) * kMargin, 0.5);
    return {low - margin, high + margin};
}

QRectF TablePlot::area() const {
    return QRectF(rect()).adjusted(kLeft, kTop, -kRight, -kBottom);
}

QPointF TablePlot::place(double megahertz, double position) const {
    const QRectF inside = area();
    return {inside.left() + frequencies().share(megahertz) * inside.width(),
            inside.bottom() - positions_.share(position) * inside.height()};
}

void TablePlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawAxes(painter);
    painter.setClipRect(area().adjusted(-kMarkRadius, -kMarkRadius, kMarkRadius, kMarkRadius));
    drawNow(painter);
    drawCurve(painter, false);
    drawCurve(painter, true);
}

void TablePlot::drawAxes(QPainter& painter) const {
    const QRectF inside = area();
    const QColor line = mixed(cardColour(palette()), palette().color(QPalette::WindowText), 0.14);
    const auto eachLine = [](const Span& span, int count, const auto& draw) {
        const double step = roundStep(span.high - span.low, count);
        for (double value = std::ceil(span.low / step) * step; value <= span.high; value += step)
            draw(value, gridText(value, step));
    };
    eachLine(frequencies(), kGridLines, [&](double value, const QString& text) {
        const double x = inside.left() + frequencies().share(value) * inside.width();
        painter.setPen(line);
        painter.drawLine(QPointF(x, inside.top()), QPointF(x, inside.bottom()));
        painter.setPen(quietText(palette()));
        painter.drawText(QRectF(x - 60, inside.bottom() + 4, 120, kBottom - 4),
                         Qt::AlignHCenter | Qt::AlignTop, text);
    });
    eachLine(positions_, kGridLines, [&](double value, const QString& text) {
        const double y = inside.bottom() - positions_.share(value) * inside.height();
        painter.setPen(line);
        painter.drawLine(QPointF(inside.left(), y), QPointF(inside.right(), y));
        painter.setPen(quietText(palette()));
        painter.drawText(QRectF(0, y - 10, kLeft - 6, 20), Qt::AlignRight | Qt::AlignVCenter, text);
    });
    painter.drawText(QRectF(0, 0, kLeft - 6, kTop), Qt::AlignRight | Qt::AlignVCenter,
                     QString::fromStdString(form_.lblUnitA.Caption).remove(':'));
    double x = inside.left();
    for (const bool engineB : {false, true}) {
        const QString name = QString::fromStdString(picture_.engines.at(engineB ? 1 : 0));
        painter.setPen(QPen(colourOf(engineB, palette()), 2));
        painter.drawLine(QPointF(x, kTop / 2), QPointF(x + 18, kTop / 2));
        painter.setPen(quietText(palette()));
        painter.drawText(QPointF(x + 24, kTop / 2 + 5), name);
        x += 24 + painter.fontMetrics().horizontalAdvance(name) + 24;
    }
}

void TablePlot::drawCurve(QPainter& painter, bool engineB) const {
    const form::FrequencyTable& table = picture_.table;
    const QColor colour = colourOf(engineB, palette());
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    // A straight line needs its ends; a smooth one a point every few pixels.
    constexpr double kPixelsAPoint = 3;
    constexpr double kMostPieces = 16;
    QPolygonF stretch;
    for (std::size_t i = 0; i + 1 < table.size(); ++i) {
        if (table[i].endsStretch()) {
            painter.drawPolyline(std::exchange(stretch, {}));
            continue;
        }
        const double wide = place(table[i + 1].megahertz, 0).x() - place(table[i].megahertz, 0).x();
        const int pieces = picture_.curve == form::TableCurve::kLinear
                               ? 1
                               : static_cast<int>(std::clamp(wide / kPixelsAPoint, 1.0, kMostPieces));
        for (int piece = 0; piece <= pieces; ++piece) {
            const double megahertz =
                std::lerp(table[i].megahertz, table[i + 1].megahertz, static_cast<double>(piece) / pieces);
            const auto at = memory::positionsAt(table, megahertz, picture_.curve);
            if (at) stretch << place(megahertz, engineB ? at->b : at->a);
        }
    }
    painter.drawPolyline(stretch);
    // Four hundred circles, drawn one by one, would take longer than all else.
    const QPixmap mark = markOf(colour, colour, kMarkRadius);
    const QPixmap current = markOf(colour, palette().color(QPalette::Window), kMarkRadius + 1);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const QPixmap& each = static_cast<int>(i) == picture_.row ? current : mark;
        const QSizeF size = each.deviceIndependentSize();
        painter.drawPixmap(place(table[i].megahertz, positionOf(table[i], engineB)) -
                               QPointF(size.width(), size.height()) / 2,
                           each);
    }
}

QPixmap TablePlot::markOf(const QColor& edge, const QColor& inside, double radius) const {
    const int side = 2 * static_cast<int>(std::ceil(radius + 1));
    QPixmap mark(QSize(side, side) * devicePixelRatioF());
    mark.setDevicePixelRatio(devicePixelRatioF());
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, 2));
    painter.setBrush(inside);
    painter.drawEllipse(QPointF(side, side) / 2, radius, radius);
    return mark;
}

void TablePlot::drawNow(QPainter& painter) const {
    const QRectF inside = area();
    for (const bool engineB : {false, true}) {
        QColor colour = colourOf(engineB, palette());
        colour.setAlphaF(0.5F);
        painter.setPen(QPen(colour, 1, Qt::DashLine));
        const double y = place(0, engineB ? picture_.posB : picture_.posA).y();
        painter.drawLine(QPointF(inside.left(), y), QPointF(inside.right(), y));
    }
    if (!picture_.megahertz) return;
    painter.setPen(QPen(quietText(palette()), 1, Qt::DashLine));
    const double x = place(*picture_.megahertz, 0).x();
    painter.drawLine(QPointF(x, inside.top()), QPointF(x, inside.bottom()));
}

void TablePlot::wheelEvent(QWheelEvent* event) {
    const Span span = frequencies();
    const QRectF inside = area();
    const double share = (event->position().x() - inside.left()) / inside.width();
    const double around = span.at(std::clamp(share, 0.0, 1.0));
    const double factor = std::pow(0.999, event->angleDelta().y());
    const Span all = allFrequencies();
    const Span zoomed{around + (span.low - around) * factor, around + (span.high - around) * factor};
    if (zoomed.high - zoomed.low >= all.high - all.low) {
        zoom_.reset();
    } else if (zoomed.high - zoomed.low > kSmallestSpan) {
        zoom_ = zoomed;
    }
    update();
    event->accept();
}

void TablePlot::mousePressEvent(QMouseEvent* event) {
    dragged_ = event->position();
    moved_ = false;
}

void TablePlot::mouseMoveEvent(QMouseEvent* event) {
    const QPointF way = event->position() - dragged_;
    if (!zoom_ || (!moved_ && std::abs(way.x()) < kDragStart)) return;
    moved_ = true;
    const double shift = way.x() / area().width() * (zoom_->high - zoom_->low);
    zoom_ = Span{zoom_->low - shift, zoom_->high - shift};
    dragged_ = event->position();
    update();
}

void TablePlot::mouseReleaseEvent(QMouseEvent* event) {
    if (!moved_) choose(event->position());
}

void TablePlot::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    zoom_.reset();
    update();
}

void TablePlot::choose(QPointF at) {
    double nearest = kReach;
    for (std::size_t i = 0; i < picture_.table.size(); ++i) {
        for (const bool engineB : {false, true}) {
            const QPointF way =
                place(picture_.table[i].megahertz, positionOf(picture_.table[i], engineB)) - at;
            const double distance = std::hypot(way.x(), way.y());
            if (distance >= nearest) continue;
            nearest = distance;
            window_.grid.Row = static_cast<int>(i);
        }
    }
    look();
}

} // namespace ui
