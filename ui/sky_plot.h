#pragma once

#include "form/form1.h"
#include "ui/plot.h"

#include <QElapsedTimer>
#include <deque>

namespace ui {

using form::Direction;

/// The directions of the last ten minutes, one a second at the most.
class SkyTrack {
  public:
    struct Sample {
        qint64 at; // milliseconds
        Direction direction;
    };
    static constexpr qint64 kKeptMilliseconds = 600'000;
    static constexpr qint64 kBetweenSamples = 1000;

    /// If two samples are further apart than this, the track has a gap between them.
    static constexpr qint64 kGap = 3000;

    /// Adds a direction and drops old samples; `now` is in milliseconds. Returns false if the direction was
    /// not added.
    bool add(qint64 now, const Direction& direction);
    const std::deque<Sample>& samples() const { return samples_; }

  private:
    std::deque<Sample> samples_;
};

/// Draws the sky like a map: north up, east right, zenith in the middle.
class SkyPlot : public Plot {
  public:
    enum class Who { Antenna, Target };

    explicit SkyPlot(form::Form1& form);

    /// The place of a direction in a circle of radius 1, y down.
    static QPointF place(const Direction& direction);
    /// The direction at a place in that circle, elevation 0 to 90.
    static Direction directionAt(QPointF place);
    static void drawMark(QPainter& painter, const QPalette& palette, Who who, QPointF centre);
    static constexpr double kMarkRadius = 6;

    QSize sizeHint() const override { return {200, 200}; }
    QSize minimumSizeHint() const override { return {140, 140}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void look() override;
    double radius() const;
    /// Draws the ends of the range and the antenna's way to its next position.
    void drawPlan(QPainter& painter, double radius) const;
    void drawSky(QPainter& painter, double radius) const;
    void drawTrack(QPainter& painter, double radius, Who who, const SkyTrack& track) const;

    form::Form1& form_;
    QElapsedTimer clock_;
    Direction antenna_;
    form::RotorPlan plan_;
    SkyTrack antennaTrack_, targetTrack_;
};

/// The mark of a direction, for the legend.
class SkyMark : public QWidget {
  public:
    explicit SkyMark(SkyPlot::Who who);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SkyPlot::Who who_;
};

} // namespace ui
