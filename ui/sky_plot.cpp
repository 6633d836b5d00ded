#include "ui/sky_plot.h"

#include "ui/colours.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace ui {

namespace {

constexpr double kZenith = 90;
constexpr double kRim = 18;    // pixels around the horizon, for the letters
constexpr double kEndMark = 5; // pixels to both sides of it, for the range's ends
constexpr int kPlanParts = 60;

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

SkyPlot::SkyPlot(form::Form1& form) : form_(form) {
    clock_.start();
}

QPointF SkyPlot::place(const Direction& direction) {
    // Above 90 degrees the radius becomes negative, so the way goes down on the other side.
    const double radius = std::clamp((kZenith - direction.elevation) / kZenith, -1.0, 1.0);
    const double angle = direction.azimuth * std::numbers::pi / 180;
    return {radius * std::sin(angle), -radius * std::cos(angle)};
}

Direction SkyPlot::directionAt(QPointF place) {
    const double radius = std::min(std::hypot(place.x(), place.y()), 1.0);
    const double angle = std::atan2(place.x(), -place.y()) * 180 / std::numbers::pi;
    return {angle < 0 ? angle + 360 : angle, kZenith * (1 - radius)};
}

void SkyPlot::look() {
    const Direction antenna{form_.sngPosAz, form_.sngPosEl};
    const qint64 now = clock_.elapsed();
    // The tracks move on once a second, even if both directions stay the same.
    bool moved = antennaTrack_.add(now, antenna);
    if (form_.plan.target && targetTrack_.add(now, *form_.plan.target)) moved = true;
    if (!moved && antenna == antenna_ && plan_ == form_.plan) return;
    plan_ = form_.plan;
    antenna_ = antenna;
    update();
}

void SkyPlot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const double radius = this->radius();
    drawSky(painter, radius);
    drawPlan(painter, radius);
    drawTrack(painter, radius, Who::Target, targetTrack_);
    drawTrack(painter, radius, Who::Antenna, antennaTrack_);
    if (plan_.target) drawMark(painter, palette(), Who::Target, place(*plan_.target) * radius);
    drawMark(painter, palette(), Who::Antenna, place(antenna_) * radius);
    if (antenna_.elevation <= kZenith) return;
    painter.setPen(quietText(palette()));
    painter.drawText(QRectF(rect()).translated(-QRectF(rect()).center()), Qt::AlignLeft | Qt::AlignBottom,
                     "flipped");
}

double SkyPlot::radius() const {
    return std::min(width(), height()) / 2.0 - kRim;
}

void SkyPlot::mousePressEvent(QMouseEvent* event) {
    const QPointF place = (event->position() - QRectF(rect()).center()) / radius();
    if (event->button() != Qt::LeftButton || std::hypot(place.x(), place.y()) > 1) {
        QWidget::mousePressEvent(event);
        return;
    }
    form_.guard([&] { form_.onSkyPressed(directionAt(place)); });
}

void SkyPlot::drawPlan(QPainter& painter, double radius) const {
    painter.setPen(QPen(quietText(palette()), 2));
    for (const double end : {plan_.azimuthMin, plan_.azimuthMax}) {
        const QPointF rim = place({end, 0});
        painter.drawLine(rim * (radius - kEndMark), rim * (radius + kEndMark));
    }
    if (!plan_.goal) return;
    // Both axes start together; when the axis with the shorter way has arrived, the other axis goes on alone.
    const double azimuth = plan_.goal->azimuth - antenna_.azimuth;
    const double elevation = plan_.goal->elevation - antenna_.elevation;
    const double way = std::max(std::abs(azimuth), std::abs(elevation));
    QPolygonF line;
    for (int part = 0; part <= kPlanParts; ++part) {
        const double gone = way * part / kPlanParts;
        line << place({antenna_.azimuth + std::clamp(azimuth, -gone, gone),
                       antenna_.elevation + std::clamp(elevation, -gone, gone)}) *
                    radius;
    }
    painter.setPen(QPen(colourOf(Who::Antenna, palette()), 1, Qt::DashLine));
    painter.drawPolyline(line);
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
