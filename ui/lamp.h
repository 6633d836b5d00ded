#pragma once

#include <QWidget>

namespace ui {

/// A small signal lamp: dark glass while its colour is black, glowing in any other.
class Lamp : public QWidget {
  public:
    explicit Lamp(QWidget* parent = nullptr);

    void setColour(const QColor& colour);
    QColor colour() const { return colour_; }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QColor colour_ = Qt::black;
};

} // namespace ui
