#pragma once

#include <QHash>
#include <QPixmap>
#include <QWidget>

namespace ui {

/// A small signal lamp on a card: dark glass while its colour is black, glowing in any other.
class Lamp : public QWidget {
  public:
    explicit Lamp(QWidget* parent = nullptr);

    void setColour(const QColor& colour);
    QColor colour() const { return colour_; }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QPixmap paint() const;

    QColor colour_ = Qt::black;
    QHash<QRgb, QPixmap> pictures_;
};

} // namespace ui
