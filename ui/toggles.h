#pragma once

#include <QCheckBox>
#include <QRadioButton>
#include <optional>

namespace ui {

/// A check box that always shows its control's value: a click changes the control, and only the control
/// changes the box. Its size comes from samples.
class TickBox : public QCheckBox {
  public:
    explicit TickBox(QWidget* parent = nullptr);

    void reserve(const QString& samples) { samples_ = samples; }
    /// A coloured plate behind it; none follows the palette.
    void setPlate(std::optional<QColor> plate);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void nextCheckState() override {}
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& place) const override { return rect().contains(place); }

  private:
    QString samples_;
    std::optional<QColor> plate_;
};

/// An option of a list in which no option need be selected. The arrow keys move the focus, never the
/// selection.
class OptionDot : public QRadioButton {
  public:
    explicit OptionDot(QWidget* parent = nullptr);

    /// The options before and behind this one, for the arrow keys.
    void setNeighbours(OptionDot* previous, OptionDot* next);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void nextCheckState() override {}
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& place) const override { return rect().contains(place); }

  private:
    OptionDot* previous_ = nullptr;
    OptionDot* next_ = nullptr;
};

} // namespace ui
