#pragma once

#include "form/form1.h"
#include "form/table_window.h"
#include "ui/plot.h"

#include <optional>

namespace ui {

/// Both positions over the frequency: the entries, the curve between them, the frequency now, and where the
/// engines stand. The wheel zooms around the pointer, a drag moves, a double-click shows all again; a click
/// on an entry makes its row the current one.
class TablePlot : public Plot {
  public:
    TablePlot(const form::Form1& form, form::FrmHiResMem& window);

    QSize sizeHint() const override { return {520, 320}; }
    QSize minimumSizeHint() const override { return {260, 160}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    /// What is drawn; a change of it is a reason to repaint.
    struct Picture {
        form::FrequencyTable table;
        form::TableCurve curve = form::TableCurve::kLinear;
        std::optional<double> megahertz; // now
        double posA = 0, posB = 0;
        int row = -1;
        std::array<std::string, 2> engines;
        bool operator==(const Picture&) const = default;
    };
    struct Span {
        double low, high;
        double share(double value) const { return (value - low) / (high - low); }
        double at(double share) const { return low + share * (high - low); }
    };

    void look() override;
    Picture seen() const;
    Span allFrequencies() const;
    Span frequencies() const { return zoom_.value_or(allFrequencies()); }
    Span allPositions() const;
    QRectF area() const;
    QPointF place(double megahertz, double position) const;
    void drawAxes(QPainter& painter) const;
    void drawCurve(QPainter& painter, bool engineB) const;
    QPixmap markOf(const QColor& edge, const QColor& inside, double radius) const;
    void drawNow(QPainter& painter) const;
    void choose(QPointF at);

    const form::Form1& form_;
    form::FrmHiResMem& window_;
    Picture picture_;
    Span positions_ = allPositions();
    std::optional<Span> zoom_;
    QPointF dragged_;
    bool moved_ = false;
};

} // namespace ui
