#pragma once

#include "ui/caption_label.h"

#include <QHash>
#include <QPixmap>

namespace ui {

/// A number in cells of equal width, as large as its area allows: digits do not move when a digit changes.
class Digits : public CaptionLabel {
  public:
    explicit Digits(const QString& text = {}, QWidget* parent = nullptr);

    void setDigitColour(const QColor& colour);
    /// The background of the digits.
    void setPaper(const QColor& colour);
    /// The height of the digits' font that fits this room, in pixels.
    static int fontHeight(const QFont& font, const QSize& room);

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void repaintAnew();
    const QPixmap& cell(QChar character);

    QColor colour_, paper_;
    // The pictures of characters, and what they were painted for.
    QHash<QChar, QPixmap> cells_;
    double cellsShown_ = 0;
    double ratioShown_ = 1;
};

/// The background of a position: the position (in degrees or in units, whichever is visible) and its unit.
class Display : public QWidget {
  public:
    explicit Display(QWidget* parent = nullptr);

    void setFill(const QColor& colour);
    /// The numbers lie on top of each other, the unit before them.
    void place(Digits& position, Digits& angle, CaptionLabel& unit);
    /// Right of the position, left of the angle: the target over the time to go; the bar below.
    void placeMovement(CaptionLabel& target, CaptionLabel& toGo, QWidget& bar);
    /// Right of the angle while the angle is visible, under its caption.
    void placeReceived(Digits& received, CaptionLabel& caption);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void arrange();
    static int placeNumber(Digits& digits, const QRect& area);

    QColor fill_;
    Digits* position_ = nullptr;
    Digits* angle_ = nullptr;
    CaptionLabel* unit_ = nullptr;
    CaptionLabel* target_ = nullptr;
    CaptionLabel* toGo_ = nullptr;
    QWidget* bar_ = nullptr;
    Digits* received_ = nullptr;
    CaptionLabel* receivedCaption_ = nullptr;
};

} // namespace ui
