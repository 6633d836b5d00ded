#include "ui/sky_plot.h"

#include "runtime/number.h"
#include "ui/colours.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace ui {

namespace {

constexpr int kLookMilliseconds = 100;
constexpr double kZenith = 90;
constexpr double kRim = 18; // pixels around the horizon, for the letters

QColor colourOf(SkyPlot::Who who, const QPalette& palette) {
    return palette.color(who == SkyPlot::Who::Antenna ? QPalette::WindowText : QPalette::Highlight);
}

} // namespace

bool SkyTrack::add(qint64 now, const Direction& direction) {
    while (!samples_.empty() && now - samples_.front().at > kKeptMilliseconds)
        samples_.pop_front();
    if (!samples_.empty() && now - samples_.back().at < kBetweenSamples) return false;
    samples_.push_back({now, direction});
    return true;
}

SkyPlot::SkyPlot(const form::Form1& form) : form_(form) {
    clock_.start();
    looking_.setInterval(kLookMilliseconds);
    QObject::connect(&looking_, &QTimer::timeout, this, [this] { look(); });
}

QPointF SkyPlot::place(const Direction& direction) {
    // Past the zenith the way leads down on the other side by itself: the radius changes its sign.
    const double radius = std::clamp((kZenith - direction.elevation) / kZenith, -1.0, 1.0);
    const double angle = direction.azimuth * std::numbers::pi / 180;
    return {radius * std::sin(angle), -radius * std::cos(angle)};
}

void SkyPlot::look() {
    const Direction antenna{form_.sngPosAz, form_.sngPosEl};
    std::optional<Direction> target;
    const std::string& azimuth = form_.lblAzRx.Caption;
    const std::string& elevation = form_.lblElRx.Caption;
    if (!azimuth.empty() && !elevation.empty()) {
        target = Direction{runtime::leadingNumber(azimuth), runtime::leadingNumber(elevation)};
    }
    const qint64 now = clock_.elapsed();
    // Once a second the tracks move on, also while both directions stand still.
    bool moved = antennaTrack_.add(now, antenna);
    if (target && targetTrack_.add(now, *target)) moved = true;
    if (!moved && antenna == antenna_ && target == target_) return;
    antenna_ = antenna;
    target_ = target;
    update();
}

void SkyPlot::showEvent(QShowEvent* event) {
    look();
    looking_.start();
    QWidget::showEvent(event);
}

void SkyPlot::hideEvent(QHideEvent* event) {
    looking_.stop();
    QWidget::hideEvent(event);
}

void SkyPlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const double radius = std::min(width(), height()) / 2.0 - kRim;
    drawSky(painter, radius);
    drawTrack(painter, radius, Who::Target, targetTrack_);
    drawTrack(painter, radius, Who::Antenna, antennaTrack_);
    if (target_) drawMark(painter, palette(), Who::Target, place(*target_) * radius);
    drawMark(painter, palette(), Who::Antenna, place(antenna_) * radius);
}

void SkyPlot::drawSky(QPainter& painter, double radius) const {
    const QColor line = mixed(cardColour(palette()), palette().color(QPalette::WindowText), 0.22);
    painter.setPen(QPen(line, 1));
    painter.setBrush(mixed(cardColour(palette()), palette().color(QPalette::WindowText), 0.035));
    painter.drawEllipse(QPointF(), radius, radius);
    painter.setBrush(Qt::NoBrush);
    for (const double elevation : {30.0, 60.0}) {
        const double ring = radius * (kZenith - elevation) / kZenith;
        painter.drawEllipse(QPointF(), ring, ring);
    }
    painter.drawLine(QPointF(-radius, 0), QPointF(radius, 0));
    painter.drawLine(QPointF(0, -radius), QPointF(0, radius));
    painter.setPen(quietText(palette()));
    const auto letter = [&](double azimuth, double at, const QString& text) {
        const QPointF centre = place({azimuth, 0}) * at;
        painter.drawText(QRectF(centre.x() - kRim, centre.y() - kRim, 2 * kRim, 2 * kRim), Qt::AlignCenter,
                         text);
    };
    letter(0, radius + kRim / 2, "N");
    letter(90, radius + kRim / 2, "E");
    letter(180, radius + kRim / 2, "S");
    letter(270, radius + kRim / 2, "W");
    letter(45, radius * 2 / 3, "30");
    letter(45, radius / 3, "60");
}

void SkyPlot::drawTrack(QPainter& painter, double radius, Who who, const SkyTrack& track) const {
    QColor colour = colourOf(who, palette());
    colour.setAlphaF(0.55F);
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPolygonF line;
    qint64 before = 0;
    for (const SkyTrack::Sample& sample : track.samples()) {
        if (sample.at - before > SkyTrack::kGap) {
            painter.drawPolyline(line);
            line.clear();
        }
        line << place(sample.direction) * radius;
        before = sample.at;
    }
    painter.drawPolyline(line);
}

void SkyPlot::drawMark(QPainter& painter, const QPalette& palette, Who who, QPointF centre) {
    const QColor colour = colourOf(who, palette);
    if (who == Who::Antenna) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(centre, kMarkRadius - 1, kMarkRadius - 1);
        return;
    }
    painter.setPen(QPen(colour, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(centre, kMarkRadius + 2, kMarkRadius + 2);
    painter.drawLine(centre - QPointF(kMarkRadius + 6, 0), centre + QPointF(kMarkRadius + 6, 0));
    painter.drawLine(centre - QPointF(0, kMarkRadius + 6), centre + QPointF(0, kMarkRadius + 6));
}

SkyMark::SkyMark(SkyPlot::Who who) : who_(who) {
    const int side = static_cast<int>(4 * SkyPlot::kMarkRadius + 4);
    setFixedSize(side, side);
}

void SkyMark::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    SkyPlot::drawMark(painter, palette(), who_, QRectF(rect()).center());
}

} // namespace ui
